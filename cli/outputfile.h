#pragma once

#include <string>

namespace cli {

/// A file that is written from its beginning, or the standard output. Every failed write is noticed.
///
/// Bytes are gathered and written in larger pieces, at the latest by `close`.
/// Threads: one thread at a time.
/// Failure: a `Failure` that names the file and the system's reason; `Stopped` when the reader of a pipe
/// has gone, or when the user ends the run while a pipe is full.
class OutputFile
{
public:
    /// Creates the file or empties the one that is there.
    explicit OutputFile(const std::string& path);
    static OutputFile standardOutput();
    ~OutputFile();
    OutputFile(OutputFile&& other) noexcept;
    OutputFile& operator=(OutputFile&&) = delete;

    const std::string& path() const { return _path; }
    void write(const std::string& bytes);
    void flush();
    void close();

private:
    OutputFile(const std::string& path, int descriptor);
    [[noreturn]] void fail() const;
    void waitUntilWritable() const;

    const std::string _path;
    int _descriptor; // -1 once closed
    std::string _pending;
};

} // namespace cli
