#include "corvale/engine/corvale.h"
#include "system/clirunner.h"

#include <opencv2/imgproc.hpp>

#include <cstdio>
#include <sstream>

namespace {

class CliExamples : public support::CliRunner
{
protected:
    const std::string programs = "examples/programs/";
    const std::string data = "examples/data/";

    // The boxes in a saved list by the number of their frame.
    std::vector<std::vector<cv::Rect>> savedBoxes(const std::string& name) const
    {
        std::vector<std::vector<cv::Rect>> boxes(100);
        std::istringstream lines(text(name));
        cv::Point from, to;
        for (std::string line; std::getline(lines, line);)
            for (std::size_t at = 0; (at = line.find("{S", at + 1)) != std::string::npos;) {
                std::sscanf(&line[at], "{Start=[%d,%d] End=[%d,%d]}", &from.x, &from.y, &to.x, &to.y);
                boxes.at(std::stoul(line)).emplace_back(from, to);
            }
        return boxes;
    }
};

TEST_F(CliExamples, MotionSeparatesPeopleFromTheBackground)
{
    ASSERT_TRUE(succeeds(programs + "motion.fgs --feed camera=" + data + "pedestrians.avi " +
                         "--save background:image=bg.avi --save motion:mask=mask-%d.png " +
                         "--save motion:people=people.avi"));
    const std::vector<cv::Mat> background = frames("bg.avi"), people = frames("people.avi");
    ASSERT_EQ(background.size(), 100u);
    for (int i = 15; i < 100; i += 5) {
        const double share =
            cv::countNonZero(picture("mask-" + std::to_string(i) + ".png")) / (384.0 * 288.0);
        EXPECT_GT(share, 0.003) << i;
        EXPECT_LT(share, 0.05) << i;
        EXPECT_GT(cv::mean(people[i])[0], 230.0) << "mostly white paper at " << i;
    }
    // People walk over this piece of pavement at one time or another; the background never shows one.
    const cv::Rect pavement(150, 100, 50, 60);
    for (int i = 25; i < 100; i += 5) {
        cv::Mat grey;
        cv::cvtColor(background[i](pavement), grey, cv::COLOR_BGR2GRAY);
        EXPECT_LT(cv::countNonZero(grey < 90), 30) << i;
    }
}

TEST_F(CliExamples, PedestriansBoxesWhoeverWalks)
{
    ASSERT_TRUE(succeeds(programs + "pedestrians.fgs --feed camera=" + data + "pedestrians.avi " +
                         "--save pedestrians:boxes=b.txt --save pedestrians:drawing=d-%d.png"));
    const auto boxes = savedBoxes("b.txt");
    const std::pair<int, cv::Point> walking[] = {{20, {189, 118}}, {20, {230, 139}}, {20, {358, 162}},
                                                 {50, {193, 110}}, {50, {223, 104}}, {50, {261, 130}},
                                                 {50, {285, 131}}, {50, {346, 158}}, {88, {149, 110}},
                                                 {88, {196, 106}}, {88, {241, 98}},  {88, {290, 107}}};
    for (const auto& [frame, person] : walking) {
        const cv::Mat drawing = picture("d-" + std::to_string(frame) + ".png");
        const auto marked = [&, person = person](const cv::Rect& box) {
            return box.contains(person) && drawing.at<cv::Vec3b>(box.tl()) == cv::Vec3b(0, 0, 255);
        };
        EXPECT_TRUE(std::any_of(boxes[frame].begin(), boxes[frame].end(), marked)) << frame << person;
    }
    for (int frame = 15; frame < 100; ++frame) // few, none beyond the path or on the lawn
        for (const cv::Rect& box : boxes[frame])
            EXPECT_TRUE(boxes[frame].size() < 7 && box.y > 70 && box.br().y < 220 && box.area() < 3500)
                << box;
}

TEST_F(CliExamples, CoinsDepthAndClassifyFindWhatIsThere)
{
    const std::string coins = programs + "coins.fgs --feed picture=" + data + "coins.png ";
    EXPECT_EQ(output(coins + "--save coins:boxes=b.txt --count coins:boxes"), "coins:boxes 0 0.000 24\n");
    const auto coinBoxes = savedBoxes("b.txt");
    for (const cv::Rect& box : coinBoxes[0])
        EXPECT_TRUE(std::abs(box.width - box.height) < 12 && box.width > 30) << "no coin: " << box;

    ASSERT_TRUE(succeeds(programs + "depth.fgs --feed depth=" + data + "motorcycle-depth.png " +
                         "--save depth:boxes=b.txt --save depth:colours=c-%d.png"));
    EXPECT_EQ(savedBoxes("b.txt")[0].size(), 11u);
    cv::Mat coloured, depth = picture("examples/data/motorcycle-depth.png");
    cv::transform(picture("c-0.png"), coloured, cv::Matx13f(1, 1, 1));
    EXPECT_EQ(cv::countNonZero((coloured != 0) != (depth != 0)), 0);

    // "learned 44 tiles; 4189 of 4356 named right"; people hide the others
    EXPECT_GT(std::stoi(shell(CORVALE_CLASSIFY " " + data + "pedestrians.avi b.xml").output.substr(18)),
              4100);
}

TEST_F(CliExamples, EveryCompositeCanBeDrawn)
{
    for (const auto& file : boost::filesystem::recursive_directory_iterator(path("examples/programs"))) {
        ZR::Corvale::Corvale engine(0);
        if (file.path().extension() == ".fgs" && engine.loadProgramFromFile(file.path().string()))
            for (const std::string& filter : engine.getFilters())
                for (const int depth : {-1, 0, 1, 2, 3})
                    write(filter + std::to_string(depth) + ".dot", engine.dumpFilter(filter, depth));
    }
    EXPECT_EQ(shell("dot -Tsvg *.dot | grep -c \"</svg>\" >drawn").errors, "");
    EXPECT_EQ(text("drawn"), shell("ls *.dot | wc -l").output);
    EXPECT_EQ(shell("corvale draw examples/programs/coins.fgs Coins --depth 2").output, text("Coins2.dot"));
    shell("corvale draw examples/programs/coins.fgs Coins -o coins.png");
    EXPECT_GT(picture("coins.png").cols, 1000);
}

TEST_F(CliExamples, PulseTakesOneStill)
{
    const std::string feed =
        "--frames 10 --feed camera=" + data + "pedestrians.avi --save album:still=s-%d.png ";
    ASSERT_TRUE(succeeds(programs + "pulse.fgs " + feed + "--feed album:shutter=value:true"));
    EXPECT_EQ(shell("ls s-*").output, "s-0.png\n");
    shell("rm s-*");
    ASSERT_TRUE(succeeds(programs + "pulse.fgs " + feed));
    EXPECT_NE(shell("ls s-*").exitCode, 0);
}

TEST_F(CliExamples, LambdaAggregateAndPluginGiveTheirResults)
{
    const std::string fed = " --feed picture=" + data + "coins.png ";
    const cv::Mat coins = picture("examples/data/coins.png");
    ASSERT_TRUE(succeeds(programs + "lambda.fgs" + fed +
                         "--save levels:low=low-%d.png --save levels:high=high-%d.png"));
    EXPECT_EQ(cv::countNonZero(picture("low-0.png") != (coins > 80)), 0);
    EXPECT_EQ(cv::countNonZero(picture("high-0.png") != (coins > 160)), 0);
    EXPECT_EQ(output(programs + "aggregate.fgs --feed left=value:7 --print arithmetic:results"),
              "arithmetic:results 0 0.000 {12;2;35}\n");
    EXPECT_EQ(output(CORVALE_PLUGIN_PROGRAM + fed + "--print count:bright"),
              "count:bright 0 0.000 " + std::to_string(cv::countNonZero(coins > 127)) + "\n");
    EXPECT_EQ(shell(CORVALE_MINIMAL).output, "128 of 256 pixels are bright\n");
}

} // namespace
