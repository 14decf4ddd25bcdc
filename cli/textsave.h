#pragma once

#include "cli/outputfile.h"
#include "cli/save.h"

namespace cli {

/// Writes a line for each value: the number of the frame, its time in seconds, the value's text or what else
/// is to be said of it. Frames without value have no line.
class TextSave : public Save
{
public:
    using Form = std::string (*)(const DataPointer& value);

    /// `head` stands before each line.
    explicit TextSave(OutputFile file, const std::string& head = "", Form form = textOfValue);

    void write(const Moment& moment, const DataPointer& value) override;
    void finish() override;

private:
    OutputFile _file;
    const std::string _head;
    const Form _form;
};

} // namespace cli
