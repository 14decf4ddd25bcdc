#pragma once

#include <stdexcept>
#include <string>

namespace cli {

/// What the program gives back to the shell. A run ended by a signal gives 128 and the signal's number.
enum ExitCode
{
    Success = 0,
    BadInput = 2,
    BadProgram = 3
};

/// Ends the program: one line that says what is wrong and what to do about it.
class Failure : public std::runtime_error
{
public:
    explicit Failure(const std::string& line, ExitCode exitCode = BadInput)
        : std::runtime_error(line),
          _exitCode(exitCode)
    {
    }

    ExitCode exitCode() const { return _exitCode; }

private:
    ExitCode _exitCode;
};

/// Ends a run early without fault: nobody reads the output any more, or the user stopped the run.
class Stopped
{
};

} // namespace cli
