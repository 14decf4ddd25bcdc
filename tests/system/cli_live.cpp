#include "system/clirunner.h"

namespace {

using CliLive = support::CliRunner;

// Frames may be missed on a slow machine, but the run lasts to the last one, and nothing is wrong.
TEST_F(CliLive, WholeRecordingWithoutAnErrorLine)
{
    writeVideo("video.avi", 40, 20.0);
    const Result result = shell("corvale run examples/programs/motion.fgs --live --threads 2 "
                                "--feed camera=video.avi --save motion:mask=mask.avi --print motion:mask");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_NE(result.output.find("40 frames in "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("\nmotion "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("motion:mask 0 "), std::string::npos) << result.output;
    EXPECT_GT(frames("mask.avi").size(), 0u);
}

TEST_F(CliLive, EveryValueOfASinkIsWrittenOnceAndInOrder)
{
    write("p.fgs", "source in { } process p(Identity, 3, 1000.0) { in <= in; out => out }");
    for (int i = 0; i < 20; ++i)
        writePicture("f" + std::to_string(i) + ".png", 4, 4, 10 * i);
    ASSERT_TRUE(succeeds("p.fgs --live --rate 50 --feed in=f%d.png --save p:out=o-%d.png"));
    int former = -1, count = 0;
    for (cv::Mat one; !(one = picture("o-" + std::to_string(count) + ".png")).empty(); ++count) {
        EXPECT_GT(one.at<uchar>(0, 0), former);
        former = one.at<uchar>(0, 0);
    }
    EXPECT_GT(count, 0); // which frames are met depends on how busy the machine is
}

} // namespace
