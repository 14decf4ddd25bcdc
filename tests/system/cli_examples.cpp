#include "system/clirunner.h"

#include <opencv2/imgproc.hpp>

namespace {

class CliExamples : public support::CliRunner
{
protected:
    const std::string programs = "examples/programs/";
    const std::string data = "examples/data/";
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
