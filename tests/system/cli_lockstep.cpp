#include "system/clirunner.h"

namespace {

using CliLockstep = support::CliRunner;

TEST_F(CliLockstep, TwoRunsWriteIdenticalFiles)
{
    for (const std::string run : {"a", "b"}) {
        const Result result =
            shell("mkdir " + run + " && corvale run examples/programs/motion.fgs --quiet --frames 20 " +
                  "--feed camera=examples/data/pedestrians.avi --save background:image=" + run + "/bg.avi " +
                  "--save motion:mask=" + run + "/mask.mp4 --save motion:people=" + run + "/p-%02d.png " +
                  "--save motion:mask=" + run + "/mask.txt --print motion:mask");
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        write(run + "/printed", result.output);
    }
    EXPECT_EQ(shell("diff -r a b").exitCode, 0) << text("out.log");
    EXPECT_EQ(frames("a/bg.avi").size(), 20u);
    EXPECT_GT(text("a/printed").size(), 100u);
}

// Every kind of feed, as the program sees it.
TEST_F(CliLockstep, PicturesBecomeTheKindThatTheirPixelsAre)
{
    write("p.fgs", "source in { } process p(Identity, 3, 10.0) { in <= in; out => out }"
                   "process light(Luminance, 3, 10.0) { in <= in; out => out }");
    writePicture("grey.png", 5, 3, 7);
    writePicture("depth.png", 5, 3, 700, CV_16UC1);
    writePicture("red.png", 5, 3, 255, CV_8UC3);
    shell("mkdir f; for i in 9 10 100; do cp red.png f/r$i.png; done; touch f/notes.txt");
    for (const auto& [feed, printed] : rows("feeds.txt"))
        EXPECT_EQ(output("p.fgs --print p:out --rate 4 --feed " + feed), printed + "\n") << feed;
    for (const std::string feed : {"f", "f/r%d.png", "\"f/*.png\""})
        EXPECT_EQ(support::lines(output("p.fgs --print p:out --feed in=" + feed)), 3) << feed;
    EXPECT_EQ(output("p.fgs --print p:out --feed in=value:null"), "");
    EXPECT_EQ(output("p.fgs --print p:out --feed in=value:5 --frames 2 --rate 4"),
              "p:out 0 0.000 5\np:out 1 0.250 5\n");
    EXPECT_TRUE(succeeds("p.fgs --feed in=red.png --save light:out=l-%03d.png"));
    EXPECT_EQ(picture("l-000.png").at<uchar>(0, 0), (66 * 255 + 128) >> 8) << "red comes first";
}

TEST_F(CliLockstep, SlowerRecordingsAndProcessesKeepTheirFrame)
{
    writeVideo("fast.avi", 8, 20.0);
    writeVideo("slow.avi", 9, 10.0);
    write("p.fgs", "source a { } source b { } process p(Identity, 3, 20.0) { in <= a; out => a }"
                   "process q(Identity, 3, 20.0) { in <= b; out => b }"
                   "process r(Identity, 3, 10.0) { in <= a; out => a }");
    const Result result = shell("corvale run p.fgs --feed a=fast.avi --feed b=slow.avi --save p:a=a.avi "
                                "--save q:b=b.avi --save r:a=r-%d.png");
    EXPECT_NE(result.output.find(" 4 computations"), std::string::npos) << result.output;
    const std::vector<cv::Mat> fast = frames("a.avi"), slow = frames("b.avi");
    ASSERT_EQ(fast.size(), 8u);
    ASSERT_EQ(slow.size(), 8u);
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_NEAR(cv::mean(fast[i])[0], 20.0 * i, 3.0) << i;
        EXPECT_NEAR(cv::mean(slow[i])[0], 20.0 * (i / 2), 3.0) << i;
        EXPECT_NEAR(cv::mean(picture("r-" + std::to_string(i) + ".png"))[0], 20.0 * (i - i % 2), 3.0) << i;
    }
}

// Kinds that are not to look at as they are; an odd size; frames without value.
TEST_F(CliLockstep, SavedImagesCanBeLookedAt)
{
    write("p.fgs", "source in { } source depth { } source factor { 0.5 }"
                   "process near(Identity, 3, 10.0) { in <= depth; out => out }"
                   "process mask(Threshold, 3, 10.0) { in <= in; ceil <= 100; out => out }"
                   "process late(Accum, 3, 10.0) { in <= in; factor <= factor; out => out }");
    cv::Mat halves(5, 19, CV_8UC3, cv::Scalar::all(0));
    halves.colRange(9, 19) = cv::Scalar::all(200);
    EXPECT_TRUE(cv::imwrite(path("halves.png"), halves));
    writePicture("depth.png", 5, 3, 200, CV_16UC1);
    ASSERT_TRUE(
        succeeds("p.fgs --feed in=halves.png --feed depth=depth.png --frames 3 --save mask:out=m-%d.png "
                 "--save near:out=d-%d.png --save late:out=late.avi --save late:out=late-%d.png"));
    const cv::Mat mask = picture("m-2.png");
    ASSERT_EQ(mask.type(), CV_8UC1);
    EXPECT_EQ(mask.at<uchar>(0, 0), 0);
    EXPECT_EQ(mask.at<uchar>(0, 18), 255);
    const std::vector<cv::Mat> late = frames("late.avi");
    ASSERT_EQ(late.size(), 3u);
    EXPECT_EQ(late[0].size(), cv::Size(20, 16));
    EXPECT_LT(cv::mean(late[0])[0], 5.0) << "a frame without value is black";
    EXPECT_GT(cv::mean(late[1])[0], 60.0);
    EXPECT_TRUE(picture("late-0.png").empty() && !picture("late-1.png").empty());
    EXPECT_EQ(picture("d-0.png").at<cv::Vec3b>(0, 0), cv::Vec3b(0, 0, 255)) << "what is near is red";
}

} // namespace
