#include "system/clirunner.h"

#include <opencv2/core.hpp>

#include <cmath>

namespace {

class CliLockstep : public support::CliRunner
{
};

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

TEST_F(CliLockstep, ProcessOfFiveHertzComputesOnEverySecondFrameOfTen)
{
    writeVideo("video.avi", 10, 10.0);
    write("p.fgs", "source in { } process p(Identity, 3, 5.0) { in <= in; out => out }");
    const Result result = shell("corvale run p.fgs --feed in=video.avi --save p:out=o-%d.png");
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    for (int i = 0; i < 10; ++i)
        EXPECT_NEAR(cv::mean(picture("o-" + std::to_string(i) + ".png"))[0], 20 * (i - i % 2), 2.0) << i;
    EXPECT_NE(result.output.find(" 5 computations"), std::string::npos) << result.output;
}

// Every kind of feed, as the program sees it.
TEST_F(CliLockstep, PicturesBecomeTheKindThatTheirPixelsAre)
{
    write("p.fgs", "source in { } process p(Identity, 3, 10.0) { in <= in; out => out }"
                   "process light(Luminance, 3, 10.0) { in <= in; out => out }");
    writePicture("grey.png", cv::Mat(3, 5, CV_8UC1, cv::Scalar(7)));
    writePicture("depth.png", cv::Mat(3, 5, CV_16UC1, cv::Scalar(700)));
    writePicture("red.png", cv::Mat(3, 5, CV_8UC3, cv::Scalar(0, 0, 255)));
    shell("mkdir f; for i in 9 10 100; do cp red.png f/r$i.png; done; touch f/notes.txt");

    EXPECT_EQ(run("p.fgs --feed in=grey.png --print p:out").output,
              "p:out 0 0.000 {GrayscaleImage Width=5 Height=3}\n");
    EXPECT_EQ(run("p.fgs --feed in=depth.png --print p:out --frames 2 --rate 4").output,
              "p:out 0 0.000 {DepthImage Width=5 Height=3}\np:out 1 0.250 {DepthImage Width=5 Height=3}\n");
    EXPECT_EQ(run("p.fgs --feed in=red.png --save light:out=l-%03d.png").exitCode, 0);
    EXPECT_EQ(picture("l-000.png").at<uchar>(0, 0), (66 * 255 + 128) >> 8) << "red comes first";
    for (const std::string feed : {"f", "f/r%d.png", "\"f/*.png\""})
        EXPECT_EQ(support::lines(run("p.fgs --feed in=" + feed + " --print p:out").output), 3) << feed;
    EXPECT_EQ(run("p.fgs --feed in=value:-3 --print p:out").output, "p:out 0 0.000 -3\n");
    EXPECT_EQ(run("p.fgs --feed in=value:.5 --print p:out").output, "p:out 0 0.000 0.5f\n");
    EXPECT_EQ(run("p.fgs --feed \"in=value:\\\"a b\\\"\" --print p:out").output, "p:out 0 0.000 a b\n");
    EXPECT_EQ(run("p.fgs --feed in=value:Sub --print p:out").output, "p:out 0 0.000 {void*}\n");
    EXPECT_EQ(run("p.fgs --feed in=value:null --print p:out").output, "");
}

TEST_F(CliLockstep, SlowerRecordingKeepsItsFrame)
{
    writeVideo("fast.avi", 8, 20.0);
    writeVideo("slow.avi", 9, 10.0);
    write("p.fgs", "source a { } source b { } process p(Identity, 3, 20.0) { in <= a; out => a }"
                   "process q(Identity, 3, 20.0) { in <= b; out => b }");
    ASSERT_EQ(run("p.fgs --feed a=fast.avi --feed b=slow.avi --save p:a=a.avi --save q:b=b.avi").exitCode, 0);
    const std::vector<cv::Mat> fast = frames("a.avi"), slow = frames("b.avi");
    ASSERT_EQ(fast.size(), 8u);
    ASSERT_EQ(slow.size(), 8u);
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_NEAR(cv::mean(fast[i])[0], 20.0 * i, 3.0) << i;
        EXPECT_NEAR(cv::mean(slow[i])[0], 20.0 * (i / 2), 3.0) << i;
    }
}

// Kinds that are not to look at as they are; an odd size; frames without value.
TEST_F(CliLockstep, SavedImagesCanBeLookedAt)
{
    write("p.fgs", "source in { } source factor { 0.5 }"
                   "process mask(Threshold, 3, 10.0) { in <= in; ceil <= 100; out => out }"
                   "process late(Accum, 3, 10.0) { in <= in; factor <= factor; out => out }");
    cv::Mat halves(5, 19, CV_8UC3, cv::Scalar::all(0));
    halves.colRange(9, 19) = cv::Scalar::all(200);
    writePicture("halves.png", halves);
    ASSERT_EQ(run("p.fgs --feed in=halves.png --frames 3 --save mask:out=m-%d.png --save late:out=late.avi "
                  "--save late:out=late-%d.png")
                  .exitCode,
              0);
    const cv::Mat mask = picture("m-2.png");
    ASSERT_EQ(mask.type(), CV_8UC1);
    EXPECT_EQ(mask.at<uchar>(0, 0), 0);
    EXPECT_EQ(mask.at<uchar>(0, 18), 255);
    const std::vector<cv::Mat> late = frames("late.avi");
    ASSERT_EQ(late.size(), 3u);
    EXPECT_EQ(late[0].size(), cv::Size(20, 16));
    EXPECT_LT(cv::mean(late[0])[0], 5.0) << "a frame without value is black";
    EXPECT_GT(cv::mean(late[1])[0], 60.0);
    EXPECT_TRUE(picture("late-0.png").empty());
    EXPECT_FALSE(picture("late-1.png").empty());

    writePicture("depth.png", cv::Mat(3, 5, CV_16UC1, cv::Scalar(200)));
    write("d.fgs", "source in { } process p(Identity, 3, 10.0) { in <= in; out => out }");
    ASSERT_EQ(run("d.fgs --feed in=depth.png --save p:out=d-%d.png").exitCode, 0);
    EXPECT_EQ(picture("d-0.png").at<cv::Vec3b>(0, 0), cv::Vec3b(0, 0, 255)) << "what is near is red";
}

} // namespace
