#pragma once

#include <functional>
#include <sstream>
#include <string>

/// Log lines: the one way in which the libraries speak.
///
/// Every line goes to the terminal, if its level is shown there, and to the observer, if there is one.
/// Threads: all operations are thread-safe. Lines of several threads never mix.
/// Failure: nothing here throws; a line that the memory does not suffice for is cut or dropped.
namespace rk::log {

/// The levels, most severe first.
enum Level
{
    Fatal = 1,
    Error = 2,
    Warning = 3,
    Info = 4,
    Verbose = 5,
    Debug = 6
};

/// Registers a category of lines and gives its name back, so that a source can keep it in a constant.
std::string addCategory(const std::string& name);

/// Writes one line. `file`, `function` and `line` say where it comes from; null texts count as empty.
void log(int level, const std::string& category, const std::string& message, const char* file,
         const char* function, int line);

/// One line as an observer gets it.
struct Record
{
    int level;
    std::string category;
    std::string message;
    std::string file;
    std::string function;
    int line;
};

using Handler = std::function<void(const Record&)>;

/// Sets the observer that gets every line of every level, beside the terminal, on the thread that logs.
/// An empty one removes it. The former observer is given back; no call to it is under way after this
/// returns, unless the call comes from the observer itself.
/// Several threads may call it at once. Lines that it causes itself go to the terminal alone, and what it
/// throws is dropped.
Handler setHandler(Handler handler);

/// Sets the highest level that the terminal shows; Info from the start, 0 for silence. Gives the former back.
int setLevel(int level);

/// Collects a message by stream insertion and writes it as one line when it ends.
class LogStream
{
public:
    LogStream(int level, const std::string& category, const char* file, const char* function, int line);
    ~LogStream();
    LogStream(const LogStream&) = delete;
    LogStream& operator=(const LogStream&) = delete;

    template <typename T>
    LogStream& operator<<(const T& piece)
    {
        _message << piece;
        return *this;
    }

private:
    const int _level;
    std::string _category;
    const char* const _file;
    const char* const _function;
    const int _line;
    std::ostringstream _message;
};

} // namespace rk::log

/// A `LogStream` that knows where it stands: `RK_LOG(rk::log::Error, category) << "text";`
#define RK_LOG(level, category) ::rk::log::LogStream((level), (category), __FILE__, __func__, __LINE__)
