#include "cli/outputfile.h"

#include "cli/failure.h"
#include "cli/interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace cli {

namespace {

constexpr std::size_t gathered = 1 << 16;
// What a pipe takes without blocking once it is writable at all.
constexpr std::size_t pipeful = 4096;

} // namespace

OutputFile::OutputFile(const std::string& path)
    : OutputFile(path, open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666))
{
    // Else a pipe would be waited for where no signal ends the run.
    if (_descriptor < 0 && errno == ENXIO)
        throw Failure("cannot write " + path + ": it is a pipe that nobody reads; start its reader first");
    if (_descriptor < 0)
        fail();
}

OutputFile::OutputFile(const std::string& path, int descriptor) : _path(path), _descriptor(descriptor) {}

OutputFile OutputFile::standardOutput()
{
    return OutputFile("the standard output", dup(STDOUT_FILENO));
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : _path(other._path),
      _descriptor(std::exchange(other._descriptor, -1)),
      _pending(std::move(other._pending))
{
}

OutputFile::~OutputFile()
{
    try {
        close();
    } catch (...) { // whoever wants to know closes the file
    }
}

void OutputFile::write(const std::string& bytes)
{
    _pending += bytes;
    if (_pending.size() >= gathered)
        flush();
}

void OutputFile::flush()
{
    const std::string bytes = std::exchange(_pending, {});
    for (std::size_t done = 0; done < bytes.size();) {
        waitUntilWritable();
        const ssize_t written =
            ::write(_descriptor, bytes.data() + done, std::min(bytes.size() - done, pipeful));
        if (written >= 0)
            done += static_cast<std::size_t>(written);
        else if (errno == EPIPE)
            throw Stopped();
        else if (errno != EINTR && errno != EAGAIN)
            fail();
    }
}

// A pipe whose reader has stopped reading must not keep the program from ending.
void OutputFile::waitUntilWritable() const
{
    constexpr int milliseconds = 100;
    pollfd file = {_descriptor, POLLOUT, 0};
    for (int ready = 0; (ready = poll(&file, 1, milliseconds)) <= 0;) {
        if (interrupt::signal() != 0)
            throw Stopped();
        if (ready < 0 && errno != EINTR)
            fail();
    }
}

void OutputFile::close()
{
    if (_descriptor < 0)
        return;
    const int descriptor = _descriptor;
    try {
        flush();
    } catch (...) {
        _descriptor = -1;
        ::close(descriptor);
        throw;
    }
    _descriptor = -1;
    if (::close(descriptor) != 0)
        fail();
}

void OutputFile::fail() const
{
    const char* remedy = "check the folder and its rights";
    if (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)
        remedy = "make room there, or save to another place";
    throw Failure("cannot write " + _path + ": " + std::strerror(errno) + "; " + remedy);
}

} // namespace cli
