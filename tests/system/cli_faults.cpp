#include "system/clirunner.h"

namespace {

class CliFaults : public support::CliRunner
{
protected:
    CliFaults()
    {
        write(
            "p.fgs",
            "source in { } source other { 3 } process p(Identity, 3, 10.0) { in <= in; out => out }"
            "process n(Identity, 3, 10.0) { in <= other; out => out }"
            "filter Negative { Invert x; x <= in; x => out } filter Edge { Invert x; x <= edge; x => out }");
        writeVideo("v.avi", 30, 10.0);
    }

    // One clear line on the errors, nothing on the output, and the exit code for bad input.
    static void expectFault(const Result& result, const std::string& arguments, const std::string& part)
    {
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_NE(result.errors.find(part), std::string::npos) << arguments << "\n" << result.errors;
        EXPECT_EQ(support::lines(result.errors), 1) << arguments << "\n" << result.errors;
        EXPECT_EQ(result.output, "") << arguments;
    }
    void expectFaults(const std::string& table) const
    {
        for (const auto& [arguments, part] : rows(table))
            expectFault(run(arguments), arguments, part);
    }
};

TEST_F(CliFaults, WrongArgumentsAreNamedWithTheirRemedy)
{
    expectFaults("wrong_arguments.txt");
    for (const auto& [command, part] : rows("drawing.txt"))
        expectFault(shell(command), command, part);
    EXPECT_EQ(frames("v.avi").size(), 30u);
}

TEST_F(CliFaults, FilesThatCannotBeReadEndTheRun)
{
    shell("head -c 9000 v.avi >cut.avi; echo text >text.avi; mkdir empty mixed kinds;"
          "mkfifo pipe.png pipe.fgs; ln -s loop.png loop.png; truncate -s 3G huge.png huge.avi");
    writePicture("mixed/1.png", 4, 4, 1);
    writePicture("mixed/2.png", 5, 4, 1);
    writePicture("kinds/1.png", 4, 4, 1);
    writePicture("kinds/2.png", 4, 4, 1, CV_16UC1);
    shell("head -c 60 mixed/1.png >cut.png");
    expectFaults("unreadable.txt");
    EXPECT_EQ(frames("mixed.avi").size(), 1u) << "what comes before the fault is written all the same";
}

TEST_F(CliFaults, FilesThatCannotBeWrittenEndTheRun)
{
    shell("mkdir folder.avi; mkfifo pipe.txt");
    expectFaults("unwritable.txt");
    EXPECT_FALSE(boost::filesystem::exists(path("o.avi")));

    // A limit on the size of files stands for a full disk.
    for (const std::string save : {"p:out=o.avi", "p:out=o.mp4", "p:out=o-%d.bmp", "n:out=o.txt"}) {
        const Result result = shell("trap \"\" XFSZ; ulimit -f 1; corvale run --quiet --frames 9999 p.fgs "
                                    "--feed in=v.avi --feed other=value:\"\\\"" +
                                    std::string(900, 'x') + "\\\"\" --save " + save);
        expectFault(result, save, "make room");
    }
    EXPECT_EQ(shell("corvale run --quiet p.fgs --print n:out >/dev/full").exitCode, 2);
}

// A filter that throws: the engine's nodes are left in the middle, and must not add words of their own.
TEST_F(CliFaults, FailingProgramsAndFiltersEndTheRun)
{
    write("broken.fgs", "process p(Nothing, 3, 10.0) { in <= 1 }");
    const Result broken = run("broken.fgs");
    EXPECT_EQ(broken.exitCode, 3);
    EXPECT_EQ(shell("corvale draw broken.fgs Nothing").exitCode, 3);
    EXPECT_NE(broken.errors.find("\"Nothing\" is not present in the filter library"), std::string::npos);

    write("add.fgs", "source a { } source b { } process p(Add, 3, 10.0) { left <= a; right <= b; out => o }");
    writePicture("small.png", 4, 4, 1);
    writePicture("large.png", 9, 9, 1);
    for (const std::string mode : {"", "--live "})
        expectFault(run("add.fgs " + mode + "--feed a=small.png --feed b=large.png --print p:o"), mode,
                    "failed");
}

TEST_F(CliFaults, ClosedPipeAndSignalsEndTheRunWithFinishedFiles)
{
    const Result piped = shell("corvale run --quiet p.fgs --print n:out --frames 999999999 | head -n 2; "
                               "exit ${PIPESTATUS[0]}");
    EXPECT_EQ(piped.exitCode, 0);
    EXPECT_EQ(piped.errors, "");
    EXPECT_EQ(support::lines(piped.output), 2);

    writePicture("a.png", 16, 16, 9);
    for (const std::string mode : {"", "--live --rate 200"})
        for (const auto& [signal, exitCode] : {std::pair("INT", 130), {"TERM", 143}}) {
            // The signal comes once frames have been written.
            const Result result = shell(
                "corvale run --quiet p.fgs " + mode +
                " --frames 999999999 --feed in=a.png "
                "--save p:out=o.avi --print p:out >printed & while [ ! -s printed ]; do sleep 0.01; done; "
                "kill -" +
                signal + " $!; wait $!");
            EXPECT_EQ(result.exitCode, exitCode) << mode << result.errors;
            EXPECT_EQ(result.errors, "") << mode;
            EXPECT_EQ(frames("o.avi").size(), support::lines(text("printed"))) << mode;
            shell("rm printed");
        }
}

} // namespace
