#include "cli/runjob.h"

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/liverun.h"
#include "cli/lockstep.h"
#include "cli/names.h"
#include "cli/program.h"
#include "cli/progress.h"
#include "cli/textsave.h"

#include "corvale/data/data.h"
#include "corvale/data/datalambda.h"
#include "corvale/engine/corvale.h"
#include "corvale/parser/literal.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>

#include <unistd.h>

#include <cstdio>
#include <limits>

namespace cli {

using ZR::Corvale::Corvale;
using ZR::Corvale::Data;

namespace {

const std::string valueMark = "value:";
constexpr std::uint64_t endless = std::numeric_limits<std::uint64_t>::max();

bool isValue(const std::string& feed)
{
    return feed.compare(0, valueMark.size(), valueMark) == 0;
}

// What the same text gives in a `source` statement of a program.
DataPointer valueOf(const std::string& text, const std::string& source, const Corvale& engine)
{
    if (const DataPointer literal = ZR::Corvale::literalData(text))
        return literal;
    if (text == "null")
        return {};
    if (engine.isFilter(text))
        return boost::make_shared<Data>(engine.createLambda(text));
    throw Failure("cannot feed \"" + source + "\" with " + text +
                  "; give true, false, a number, '\"a text\"', null or the name of a filter");
}

} // namespace

RunJob::RunJob(const RunOptions& options) : _options(options), _playback(options.pictureRate)
{
    rk::log::setLevel(options.quiet ? rk::log::Error : rk::log::Info);
}

RunJob::~RunJob() = default;

int RunJob::execute()
{
    requireDistinct(_options);
    openRecordings();
    loadProgram();
    setConstants();
    openOutputs();
    try {
        play();
    } catch (const Stopped&) { // all that anybody wanted to see is written
    }
    finishOutputs();
    sumUp();
    const int signal = interrupt::signal();
    return signal == 0 ? Success : 128 + signal;
}

void RunJob::openRecordings()
{
    for (const std::string& text : _options.feeds) {
        const auto [source, path] = assignment(text, "--feed");
        if (!isValue(path))
            _playback.add(source, Feed::open(path));
    }
}

void RunJob::loadProgram()
{
    if (!_options.live)
        _clock.emplace();
    _engine = std::make_unique<Corvale>(_options.live ? _options.threads : 0);
    cli::loadProgram(*_engine, _options.program);
}

void RunJob::setConstants()
{
    for (const std::string& text : _options.feeds) {
        const auto [source, path] = assignment(text, "--feed");
        requireSource(*_engine, source);
        if (isValue(path))
            _playback.addConstant(source, valueOf(path.substr(valueMark.size()), source, *_engine));
    }
}

void RunJob::openOutputs()
{
    const std::pair<const std::vector<std::string>&, TextSave::Form> shown[] = {
        {_options.prints, textOfValue}, {_options.counts, lengthOfValue}};
    for (const auto& [sinks, form] : shown)
        for (const std::string& sink : sinks)
            requireSink(*_engine, sink);
    for (const std::string& save : _options.saves)
        requireSink(*_engine, assignment(save, "--save").first);

    for (const std::string& text : _options.saves) {
        const auto [sink, path] = assignment(text, "--save");
        _outputs.push_back(std::make_unique<Output>(sink, Save::open(path, sink, _playback.rate())));
    }
    for (const auto& [sinks, form] : shown)
        for (const std::string& sink : sinks)
            _outputs.push_back(std::make_unique<Output>(
                sink, std::make_unique<TextSave>(OutputFile::standardOutput(), sink + " ", form)));
}

std::uint64_t RunJob::frameLimit() const
{
    return _options.frames.value_or(_playback.isEndless() ? 1 : endless);
}

void RunJob::play()
{
    const bool prints = !_options.prints.empty() || !_options.counts.empty();
    const bool printsHere = prints && isatty(STDOUT_FILENO) != 0;
    const std::uint64_t limit = frameLimit();
    std::optional<std::uint64_t> total = _playback.length();
    if (limit != endless)
        total = std::min(limit, total.value_or(limit));
    _progress = std::make_unique<Progress>(total, !_options.quiet && !printsHere);
    _meters = std::make_unique<Meters>(*_engine);
    if (_options.live)
        _run = std::make_unique<LiveRun>(*_engine, _playback, _outputs, *_meters, *_progress, limit);
    else
        _run =
            std::make_unique<Lockstep>(*_clock, *_engine, _playback, _outputs, *_meters, *_progress, limit);

    const auto began = Meters::Clock::now();
    const auto ended = [this, began] {
        _engine->stopScheduler();
        _progress->clear();
        _seconds = std::chrono::duration<double>(Meters::Clock::now() - began).count();
    };
    try {
        _run->execute();
    } catch (...) {
        ended();
        throw;
    }
    ended();
}

// All of them, whatever becomes of one.
void RunJob::finishOutputs()
{
    std::exception_ptr fault;
    for (const auto& output : _outputs) {
        try {
            output->finish();
        } catch (const Stopped&) {
        } catch (...) {
            fault = fault ? fault : std::current_exception();
        }
    }
    if (fault)
        std::rethrow_exception(fault);
}

void RunJob::sumUp() const
{
    if (_options.quiet)
        return;
    for (const auto& output : _outputs)
        if (!output->used())
            std::fprintf(stderr, "corvale: note: \"%s\" never had a value\n", output->sink().c_str());

    const auto frames = static_cast<double>(_run->framesPlayed());
    char line[128];
    std::snprintf(line, sizeof line, "%.0f frames in %.2f s, %.1f per second\n", frames, _seconds,
                  _seconds > 0.0 ? frames / _seconds : 0.0);
    try {
        OutputFile out = OutputFile::standardOutput();
        out.write(line + _meters->summary(_options.live ? _seconds : frames / _playback.rate()));
        out.close();
    } catch (const Stopped&) {
    }
}

} // namespace cli
