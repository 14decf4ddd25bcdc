#include "corvale/parser/parser.h"

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"
#include "corvale/engine/corvale_p.h"
#include "corvale/parser/literal.h"
#include "corvale/parser/parsingtools.h"
#include "corvale/runtime/process.h"
#include "rk/log.h"
#include "rk/unicode.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/make_shared.hpp>

#include <iterator>
#include <utility>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.parser");

using Texts = std::list<std::string>;

enum class Statement
{
    None,
    Filter,
    Source,
    Process,
    Script,
    Delete,
    Import
};

// A header announces the statement that the next piece is the body of.
struct Header
{
    Statement statement = Statement::None;
    std::string argument;
};

Header readHeader(const std::string& text)
{
    static const std::pair<const char*, Statement> keywords[] = {
        {"filter", Statement::Filter}, {"source", Statement::Source}, {"process", Statement::Process},
        {"script", Statement::Script}, {"delete", Statement::Delete}, {"import", Statement::Import}};

    auto [word, argument] = splitString(" ", text);
    for (const auto& [keyword, statement] : keywords)
        if (word == keyword && (statement != Statement::Import || argument == "file"))
            return {statement, std::move(argument)};
    return {};
}

// What a process or a script is announced by: "name(argument, argument, ...)".
struct Declaration
{
    std::string name;
    Texts arguments;
};

bool readDeclaration(const std::string& header, Declaration& declaration)
{
    const Texts pieces = blockString('(', ')', header);
    if (pieces.size() != 2)
        return false;
    declaration = {trimString(pieces.front()), listString(',', pieces.back())};
    return true;
}

// Writes the line of a failed operation. False, so that the operation can end with it.
bool refuse(const char* operation, const std::string& message)
{
    rk::log::log(rk::log::Error, category, message, __FILE__, operation, __LINE__);
    return false;
}

bool contains(const std::string& text, const char* part)
{
    return text.find(part) != std::string::npos;
}

Corvale::PairList splitAll(const char* separator, const Texts& statements)
{
    Corvale::PairList pairs;
    for (const std::string& statement : statements)
        pairs.push_back(splitString(separator, statement));
    return pairs;
}

// "node:port"; the empty port of a text without colon selects the only one that the node has.
Corvale::Pair readPort(const std::string& text)
{
    return splitString(":", text);
}

// "node:port ARROW name", on either kind of arrow.
Corvale::ExportList readExports(const char* arrow, const Texts& statements)
{
    Corvale::ExportList exports;
    for (const auto& [port, name] : splitAll(arrow, statements))
        exports.emplace_back(readPort(port), name);
    return exports;
}

// The ends of "a -> b", or of a chain "a -> b -> c": two or more. The rest of a chain is walked by
// position, since cutting it off at each arrow would copy it once a link.
Texts readEnds(const std::string& statement)
{
    const std::string arrow = "->";
    const auto [first, rest] = splitString(arrow, statement);
    Texts ends = {first};
    for (std::size_t begin = 0;;) {
        const std::size_t end = rest.find(arrow, begin);
        ends.push_back(trimString(rest.substr(begin, end - begin)));
        if (end == std::string::npos)
            return ends;
        begin = end + arrow.size();
    }
}

bool readLinks(const Texts& statements, Corvale::LinkList& links)
{
    for (const std::string& statement : statements) {
        const Texts ends = readEnds(statement);
        if (ends.size() > 2 && contains(statement, ":"))
            return false;
        for (auto from = ends.begin(), to = std::next(from); to != ends.end(); from = to++)
            links.emplace_back(readPort(*from), readPort(*to));
    }
    return true;
}

} // namespace

bool Parser::loadProgram(const std::string& program, void* handle, const std::string& basePath)
{
    Header header;
    for (const std::string& piece : blockString('{', '}', removeComments('#', program))) {
        bool done = true;
        switch (header.statement) {
        case Statement::None:
            header = readHeader(piece);
            continue;
        case Statement::Filter:
            done = createFilter(header.argument, piece);
            break;
        case Statement::Source:
            done = _createSource(header.argument, piece, program);
            break;
        case Statement::Process:
            done = createProcess(header.argument, piece);
            break;
        case Statement::Script:
            done = createFilterFromScript(header.argument, piece);
            break;
        case Statement::Delete:
            _delete(header.argument, piece);
            break;
        case Statement::Import:
            _import(piece, handle, basePath);
            break;
        }
        if (!done)
            return false;
        header = {};
    }
    return true;
}

bool Parser::_createSource(const std::string& name, const std::string& body, const std::string& program)
{
    if (!_corvale->createSource(name))
        return false;

    const std::string value = trimString(body);
    if (value.empty())
        return true;
    if (const boost::shared_ptr<Data> literal = literalData(value))
        _corvale->setData(name, literal);
    else if (value == "null")
        _corvale->setData(name, {});
    else if (_corvale->isFilter(value))
        _corvale->setData(name, boost::make_shared<Data>(_corvale->createLambda(value)));
    else
        return refuse("loadProgram", "loadProgram(" + program + ", corvaleHandle): The source " + name +
                                         " has an invalid body: " + body);
    return true;
}

void Parser::_delete(const std::string& kind, const std::string& body)
{
    const std::string name = trimString(body);
    const bool failed = (kind == "source" && !_corvale->deleteSource(name)) ||
                        (kind == "filter" && !_corvale->deleteFilter(name)) ||
                        (kind == "process" && !_corvale->deleteProcess(name));
    if (failed)
        rk::log::LogStream(rk::log::Warning, category, __FILE__, "loadProgram", __LINE__)
            << "Can't delete " << kind << ": " << name;
}

void Parser::_import(const std::string& body, void* handle, const std::string& basePath)
{
    std::string path = trimString(body);
    if (!basePath.empty()) {
        const auto& utf8 = rk::unicodeFacet();
        const boost::filesystem::path relative(path, utf8);
        path = boost::filesystem::absolute(relative, boost::filesystem::path(basePath, utf8)).string(utf8);
    }
    // The program goes on without what could not be loaded; of a plug-in the result is always false.
    _corvale->loadProgramFromFile(path, handle);
}

bool Parser::createFilter(const std::string& name, const std::string& body)
{
    // The first arrow that is found decides, in this order, and quotes do not hide one.
    Texts nodes, links, inputs, outputs;
    for (std::string& statement : listString(';', body)) {
        Texts& list = contains(statement, "->")   ? links
                      : contains(statement, "=>") ? outputs
                      : contains(statement, "<=") ? inputs
                                                  : nodes;
        list.push_back(std::move(statement));
    }
    return createFilter(name, nodes, links, inputs, outputs);
}

bool Parser::createFilter(const std::string& name, const Texts& nodes, const Texts& links,
                          const Texts& inputs, const Texts& outputs)
{
    Corvale::LinkList linkList;
    if (!readLinks(links, linkList))
        return refuse(__func__, "Chain filter can't contain a port.");
    return _corvale->createFilter(name, splitAll(" ", nodes), linkList, readExports("<=", inputs),
                                  readExports("=>", outputs));
}

bool Parser::createProcess(const std::string& header, const std::string& body)
{
    Texts inputs, outputs, events, declarations;
    for (std::string& statement : listString(';', body)) {
        if (contains(statement, "<="))
            inputs.push_back(std::move(statement));
        else if (contains(statement, "=>"))
            outputs.push_back(std::move(statement));
        else if (contains(statement, "~>"))
            events.push_back(std::move(statement));
        else if (contains(statement, "source ") || contains(statement, "pulse "))
            declarations.push_back(std::move(statement));
        else // is left out, and the process made without it
            refuse(__func__,
                   "createProcess(\"" + header + ", body): invalid declaration \"" + statement + "\"");
    }
    return createProcess(header, inputs, outputs, events, declarations);
}

bool Parser::createProcess(const std::string& header, const Texts& inputs, const Texts& outputs,
                           const Texts& events, const Texts& declarations)
{
    const std::string front = "createProcess(\"" + header;
    Declaration process;
    if (!readDeclaration(header, process))
        return refuse(__func__, front + "\", inputs, outputs): Invalid process declaration");

    const std::string prefix = front + "\", priority, frequency): ";
    auto argument = process.arguments.begin();
    const auto end = process.arguments.end();
    if (argument == end)
        return refuse(__func__, prefix + "expected at least a filter name.");
    const std::string filter = *argument++;

    unsigned int priority = Process::defaultPriority;
    if (argument != end) {
        if (!isInteger(*argument))
            return refuse(__func__, prefix + "priority \"" + *argument + "\" is not a valid integer");
        priority = static_cast<unsigned int>(toInteger(*argument++));
    }

    float frequency = Process::defaultFrequency;
    if (argument != end) {
        if (!isFloat(*argument))
            return refuse(__func__, prefix + "frequency \"" + *argument + "\" is not a valid float.");
        frequency = toFloat(*argument);
    }

    return _corvale->createProcess(process.name, filter, splitAll("<=", inputs), splitAll("=>", outputs),
                                   splitAll("~>", events), splitAll(" ", declarations), priority, frequency);
}

bool Parser::createFilterFromScript(const std::string& header, const std::string& body)
{
    const std::string front = "createFilterFromScript(\"" + header;
    Declaration script;
    if (!readDeclaration(header, script))
        return refuse(__func__, front + "\", body): Invalid filter declaration");

    const std::string prefix = front + "\", inputs, outputs): ";
    auto argument = script.arguments.begin();
    const auto end = script.arguments.end();
    if (argument == end)
        return refuse(__func__, prefix + "expected language name got nothing.");
    if (*argument != "lua")
        return refuse(__func__, prefix + "the language " + *argument + " is not supported.");
    if (++argument == end)
        return refuse(__func__, prefix + "expected inputs got nothing.");
    const Texts inputs = listString(' ', *argument);
    if (++argument == end)
        return refuse(__func__, prefix + "expected outputs got nothing.");
    const Texts outputs = listString(' ', *argument);
    return createFilterFromScript(script.name, trimString(body), Lua, inputs, outputs);
}

bool Parser::createFilterFromScript(const std::string& name, const std::string&, Language, const Texts&,
                                    const Texts&)
{
    const std::string prefix = "createFilterFromScript(" + name + ", script, language): ";
    if (_corvale->isFilter(name))
        return refuse(__func__, prefix + "The filter " + name + " already exist.");
    return refuse(__func__, prefix + "The language is not supported by corvale.");
}

} // namespace ZR::Corvale
