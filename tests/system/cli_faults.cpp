#include "system/clirunner.h"

namespace {

class CliFaults : public support::CliRunner
{
protected:
    CliFaults()
    {
        write("p.fgs",
              "source in { } source other { 3 } process p(Identity, 3, 10.0) { in <= in; out => out }"
              "process n(Identity, 3, 10.0) { in <= other; out => out }");
        writeVideo("v.avi", 30, 10.0);
    }

    // One clear line with `part` in it, nothing else, and the exit code for bad input.
    void expectFault(const std::string& arguments, const std::string& part) const
    {
        const Result result = run(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_NE(result.errors.find(part), std::string::npos) << arguments << "\n" << result.errors;
        EXPECT_EQ(support::lines(result.errors), 1) << arguments << "\n" << result.errors;
        EXPECT_EQ(result.output, "") << arguments;
    }
};

TEST_F(CliFaults, WrongArgumentsAreNamedWithTheirRemedy)
{
    expectFault("", "PROGRAM is required");
    expectFault("p.fgs --nonsense", "--nonsense");
    expectFault("p.fgs --frames 0", "--frames");
    expectFault("p.fgs --live --threads 0", "--threads");
    expectFault("missing.fgs", "no such file");
    expectFault("p.fgs --feed in", "NAME=PATH");
    expectFault("p.fgs --feed in=v.avi --feed in=v.avi", "fed twice");
    expectFault("p.fgs --feed cam=v.avi", "sources: in, other");
    expectFault("p.fgs --feed p:cam=v.avi", "its sources: in");
    expectFault("p.fgs --feed q:in=v.avi", "processes: n, p");
    expectFault("p.fgs --feed in=value:nothing", "give true, false, a number");
    expectFault("p.fgs --feed in=v.avi --print p:oot", "its sinks: out");
    expectFault("p.fgs --feed in=v.avi --print q:out", "processes: n, p");
    expectFault("p.fgs --feed in=v.avi --print p", "PROCESS:SINK");
    expectFault("p.fgs --feed in=v.avi --save p:out=o.xyz", "give a video");
    expectFault("p.fgs --feed in=v.avi --save p:out=o.png", "name-%04d.png");
    expectFault("p.fgs --feed in=v.avi --save p:out=o.avi --save n:out=o.avi", "saved to twice");
    expectFault("p.fgs --feed in=v.avi --save p:out=./v.avi", "read by this run");
    EXPECT_EQ(frames("v.avi").size(), 30u);
}

TEST_F(CliFaults, FilesThatCannotBeReadEndTheRun)
{
    shell("head -c 9000 v.avi >cut.avi; head -c 4000 v.avi >zeros.avi; head -c 9000 /dev/zero >>zeros.avi; "
          "echo text >text.avi; mkdir empty mixed kinds");
    writePicture("mixed/1.png", cv::Mat(4, 4, CV_8UC1, cv::Scalar(1)));
    writePicture("mixed/2.png", cv::Mat(4, 5, CV_8UC1, cv::Scalar(1)));
    writePicture("kinds/1.png", cv::Mat(4, 4, CV_8UC1, cv::Scalar(1)));
    writePicture("kinds/2.png", cv::Mat(4, 4, CV_16UC1, cv::Scalar(1)));
    shell("head -c 60 mixed/1.png >cut.png");

    expectFault("p.fgs --feed in=missing.avi", "no such file");
    expectFault("p.fgs --feed in=cut.avi", "cut off");
    expectFault("p.fgs --feed in=text.avi", "neither a video nor a picture");
    expectFault("p.fgs --feed in=cut.png", "cut off");
    expectFault("p.fgs --feed in=empty", "holds no pictures");
    expectFault("p.fgs --feed in=a-%d.png", "no picture fits");
    expectFault("p.fgs --feed in=/dev/null", "no file");
    // What comes before the fault is written all the same.
    expectFault("p.fgs --feed in=mixed --save p:out=mixed.avi", "where the first one is 4 x 4");
    EXPECT_EQ(frames("mixed.avi").size(), 1u);
    expectFault("p.fgs --feed in=kinds", "16 bit");
}

TEST_F(CliFaults, FilesThatCannotBeWrittenEndTheRun)
{
    const std::string fed = "p.fgs --feed in=v.avi --feed other=value:7 ";
    expectFault(fed + "--save p:out=none/o.avi", "check the folder");
    expectFault(fed + "--save p:out=none/o-%d.png", "check the folder");
    expectFault(fed + "--save n:out=o.avi", "no picture");
    EXPECT_FALSE(boost::filesystem::exists(path("o.avi")));

    // A limit on the size of files stands for a full disk.
    for (const std::string save : {"p:out=o.avi", "p:out=o.mp4", "p:out=o-%d.bmp", "n:out=o.txt"}) {
        const Result result = shell("trap \"\" XFSZ; ulimit -f 1; corvale run --quiet --frames 9999 p.fgs "
                                    "--feed in=v.avi --feed other=value:\"\\\"" +
                                    std::string(900, 'x') + "\\\"\" --save " + save);
        EXPECT_EQ(result.exitCode, 2) << save;
        EXPECT_NE(result.errors.find("make room"), std::string::npos) << save << result.errors;
        EXPECT_EQ(support::lines(result.errors), 1) << save << result.errors;
    }
    EXPECT_EQ(shell("corvale run --quiet p.fgs --print n:out >/dev/full").exitCode, 2);
}

TEST_F(CliFaults, ProgramThatDoesNotLoadShowsTheEnginesLines)
{
    write("broken.fgs", "process p(Nothing, 3, 10.0) { in <= 1 }");
    const Result result = run("broken.fgs");
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_NE(result.errors.find("\"Nothing\" is not present in the filter library"), std::string::npos);
}

// A filter that throws: the engine's nodes are left in the middle, and must not add words of their own.
TEST_F(CliFaults, FailingFilterEndsTheRunWithOneLine)
{
    write("add.fgs", "source a { } source b { } process p(Add, 3, 10.0) { left <= a; right <= b; out => o }");
    writePicture("small.png", cv::Mat(4, 4, CV_8UC1, cv::Scalar(1)));
    writePicture("large.png", cv::Mat(9, 9, CV_8UC1, cv::Scalar(1)));
    for (const std::string mode : {"", "--live "})
        expectFault("add.fgs " + mode + "--feed a=small.png --feed b=large.png --print p:o", "failed");
}

TEST_F(CliFaults, ClosedPipeAndSignalsEndTheRunWithFinishedFiles)
{
    const Result piped = shell("corvale run --quiet p.fgs --print n:out --frames 999999999 | head -n 2; "
                               "exit ${PIPESTATUS[0]}");
    EXPECT_EQ(piped.exitCode, 0);
    EXPECT_EQ(piped.errors, "");
    EXPECT_EQ(support::lines(piped.output), 2);

    writePicture("a.png", cv::Mat(16, 16, CV_8UC1, cv::Scalar(9)));
    for (const std::string mode : {"", "--live --rate 200"}) {
        // The signal comes once frames have been written.
        const Result result =
            shell("corvale run --quiet p.fgs " + mode +
                  " --frames 999999999 --feed in=a.png "
                  "--save p:out=o.avi --print p:out >printed & while [ ! -s printed ]; do sleep 0.01; done; "
                  "kill -INT $!; wait $!");
        EXPECT_EQ(result.exitCode, 130) << mode << result.errors;
        EXPECT_EQ(result.errors, "") << mode;
        EXPECT_GT(frames("o.avi").size(), 0u) << mode;
        EXPECT_EQ(frames("o.avi").size(), support::lines(text("printed"))) << mode;
        shell("rm printed");
    }
}

} // namespace
