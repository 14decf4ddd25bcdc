#pragma once

#include "cli/outputfile.h"
#include "cli/save.h"

namespace cli {

/// Writes a line for each value: the number of the frame, its time in seconds, the value's text. Frames
/// without value have no line.
class TextSave : public Save
{
public:
    /// `head` stands before each line.
    explicit TextSave(OutputFile file, const std::string& head = "");

    void write(const Moment& moment, const DataPointer& value) override;
    void finish() override;

private:
    OutputFile _file;
    const std::string _head;
};

} // namespace cli
