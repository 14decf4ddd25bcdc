#pragma once

#include "corvale/parser/language.h"

#include <list>
#include <string>

namespace ZR::Corvale {

class CorvalePrivate;

/// Runs programs of the script language: cuts a text into statements and turns each into calls on the
/// engine, in order and at once.
///
///     text, comments off -> header { body } header { body } ...
///     body of a filter or process -> statement ; statement ; ... -> sorted by their arrows
///
/// There is no syntax tree and no check ahead: what stands before a faulty statement has taken effect
/// and stays. A header that announces nothing known is passed over without a word, as is its body,
/// which is then read as a header.
/// Ownership: the engine owns its parser and outlives it.
/// Threads: keeps nothing between calls, thread-safe as far as the engine's operations are. Everything
/// runs on the caller's thread, programs that a program imports included.
/// Failure: false and one error line, of the parser or of the engine.
class Parser
{
public:
    explicit Parser(CorvalePrivate* corvale) : _corvale(corvale) {}

    /// Runs the statements of a program up to the first that fails. `handle` is passed on to the
    /// entries of imported plug-ins; relative imports are looked for in `basePath`, or as they stand
    /// when it is empty. Throws `std::out_of_range` on a value for a source whose name says
    /// "process:source" of a process that has no such source.
    bool loadProgram(const std::string& program, void* handle, const std::string& basePath);

    /// Defines a composite filter from the body of a `filter` statement.
    bool createFilter(const std::string& name, const std::string& body);
    /// The same from its sorted statements.
    bool createFilter(const std::string& name, const std::list<std::string>& nodes,
                      const std::list<std::string>& links, const std::list<std::string>& inputs,
                      const std::list<std::string>& outputs);

    /// Creates a process from a header "name(filter, priority, frequency)", the last two being
    /// optional, and the body of a `process` statement.
    bool createProcess(const std::string& header, const std::string& body);
    /// The same from its sorted statements.
    bool createProcess(const std::string& header, const std::list<std::string>& inputs,
                       const std::list<std::string>& outputs, const std::list<std::string>& events,
                       const std::list<std::string>& declarations);

    /// Reads a header "name(lua, inputs, outputs)" and the body of a `script` statement.
    bool createFilterFromScript(const std::string& header, const std::string& body);
    /// Always false: there is no script engine to run the code.
    bool createFilterFromScript(const std::string& name, const std::string& script, Language language,
                                const std::list<std::string>& inputs, const std::list<std::string>& outputs);

private:
    bool _createSource(const std::string& name, const std::string& body, const std::string& program);
    void _delete(const std::string& kind, const std::string& body);
    void _import(const std::string& body, void* handle, const std::string& basePath);

    CorvalePrivate* const _corvale; // not owned
};

} // namespace ZR::Corvale
