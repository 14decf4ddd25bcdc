#include "cli/textsave.h"

#include <cstdio>
#include <utility>

namespace cli {

TextSave::TextSave(OutputFile file, const std::string& head, Form form)
    : _file(std::move(file)),
      _head(head),
      _form(form)
{
}

void TextSave::write(const Moment& moment, const DataPointer& value)
{
    if (!value)
        return;
    char seconds[64];
    std::snprintf(seconds, sizeof seconds, " %.3f ", moment.seconds);
    _file.write(_head + std::to_string(moment.number) + seconds + _form(value) + "\n");
    if (!_head.empty()) // somebody is watching
        _file.flush();
}

void TextSave::finish()
{
    _file.close();
}

} // namespace cli
