#include "cli/graphviz.h"

#include "cli/failure.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace cli {

namespace {

// Has no name, and is gone when closed. A pipe at either end of `dot` could fill and block us both.
using ScratchFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

ScratchFile scratchFile(const std::string& content)
{
    ScratchFile file(std::tmpfile(), std::fclose);
    if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() ||
        std::fflush(file.get()) != 0)
        throw Failure(std::string("cannot write a temporary file: ") + std::strerror(errno) +
                      "; make room for temporary files");
    std::rewind(file.get());
    return file;
}

std::string contentOf(std::FILE* file)
{
    std::rewind(file);
    std::string content;
    char piece[1 << 16];
    for (std::size_t read = 0; (read = std::fread(piece, 1, sizeof piece, file)) > 0;)
        content.append(piece, read);
    return content;
}

// Runs `dot` between two files; its exit status as `waitpid` gives it.
int runDot(const std::string& format, std::FILE* input, std::FILE* output)
{
    std::string name = "dot", option = "-T" + format;
    char* const arguments[] = {name.data(), option.data(), nullptr};

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, fileno(input), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, fileno(output), STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int error = posix_spawnp(&child, "dot", &files, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0)
        throw Failure(std::string("cannot run graphviz's \"dot\": ") + std::strerror(error) +
                      "; install graphviz, or leave out -o and get the text");

    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace

std::string drawnByDot(const std::string& text, const std::string& format)
{
    const ScratchFile input = scratchFile(text);
    const ScratchFile output = scratchFile("");
    const int status = runDot(format, input.get(), output.get());
    const std::string picture = contentOf(output.get());
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || picture.empty())
        throw Failure(
            "graphviz's \"dot\" refuses this graph; give its filters, nodes and ports names of letters, "
            "digits and underscores, other than node and edge");
    return picture;
}

} // namespace cli
