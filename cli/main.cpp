#include "cli/drawcommand.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/runcommand.h"
#include "cli/text.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <opencv2/core/utils/logger.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace {

int fail(const std::string& line, int exitCode)
{
    std::fprintf(stderr, "corvale: %s\n", line.c_str());
    return exitCode;
}

// Else the first file that is opened would become the standard output that somebody closed.
void holdStandardFiles()
{
    int descriptor = 0;
    do
        descriptor = open("/dev/null", O_RDWR);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    close(descriptor);
}

// Files that cannot be read or written get one line, ours.
void silenceLibraries()
{
    cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
    setenv("OPENCV_FFMPEG_LOGLEVEL", "-8", 0);
}

} // namespace

int main(int count, char** arguments)
{
    holdStandardFiles();
    cli::interrupt::watch();
    silenceLibraries();

    CLI::App app("Runs programs of the Corvale data-flow engine.", "corvale");
    app.set_version_flag("--version", CORVALE_VERSION);
    app.require_subcommand(1);
    app.footer(
        "Exit codes: 0 done; 2 wrong arguments, or a file that cannot be read or written; 3 the program\n"
        "does not load; 128 and the signal's number if a signal ended the run.");
    const cli::RunCommand run(app);
    const cli::DrawCommand draw(app);

    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) // --help, --version
            return app.exit(error);
        const char* const command = draw.chosen() ? " draw" : run.chosen() ? " run" : "";
        return fail(cli::firstLine(error.what()) + "; see corvale" + command + " --help", cli::BadInput);
    }

    try {
        return draw.chosen() ? draw.execute() : run.execute();
    } catch (const cli::Failure& failure) {
        return fail(failure.what(), failure.exitCode());
    } catch (const cli::Stopped&) {
        return cli::Success;
    } catch (const std::exception& error) {
        return fail(cli::firstLine(error.what()), cli::BadInput);
    }
}
