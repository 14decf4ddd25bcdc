// A real program beside the same steps written by hand: pedestrians.fgs at 768 x 576, from frames held in
// memory, against OpenCV's functions in a loop. And how much of the time is the engine's own?
//
// Both work on the same frames, one after the other, on one thread. What the engine takes for itself is what
// the same program takes with filters of the same ports that only hand a value on. Exit code 1 if a target is
// missed.

#include "support/ratiotable.h"

#include "corvale/data/data.h"
#include "corvale/data/datacolorimage.h"
#include "corvale/engine/corvale.h"
#include "corvale/filter/userfilter.h"
#include "rk/log.h"
#include "rk/os.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <vector>

namespace {

using ZR::Corvale::Data;
using Frames = std::vector<cv::Mat>;
using Values = std::vector<boost::shared_ptr<Data>>;

Frames readFrames(const cv::Size& size)
{
    cv::VideoCapture video(EXAMPLES "/data/pedestrians.avi");
    Frames frames;
    for (cv::Mat frame; video.read(frame);) {
        cv::resize(frame, frame, size);
        frames.emplace_back();
        cv::cvtColor(frame, frames.back(), cv::COLOR_BGR2RGB);
    }
    if (frames.empty())
        throw std::runtime_error("cannot read the video of the examples");
    return frames;
}

// The ports of a filter, with nothing behind them.
class Hollow : public ZR::Corvale::UserFilter
{
public:
    Hollow(const ZR::Corvale::Corvale& engine, const std::string& name)
        : _name(name),
          _inputs(engine.getFilterInputs(name)),
          _outputs(engine.getFilterOutputs(name))
    {
        for (std::string& port : _inputs) {
            const std::string word = port.substr(port.rfind(' ') + 1);
            port = port.rfind("optional ", 0) == 0 ? "optional " + word : word;
        }
        for (std::string& port : _outputs)
            port = port.substr(port.rfind(' ') + 1);
    }

    std::string getName() override { return _name; }
    std::string getDescription() override { return ""; }
    std::vector<std::string> getInputs() override { return _inputs; }
    std::vector<std::string> getOutputs() override { return _outputs; }
    Values applyFilter(const Values& inputs) override { return Values(_outputs.size(), inputs.front()); }

private:
    std::string _name;
    std::vector<std::string> _inputs, _outputs;
};

enum class Filters
{
    Real,
    Hollow
};

// Lockstep, as `corvale run` does it: time is the recording's.
class Program
{
public:
    explicit Program(const Frames& frames, Filters filters = Filters::Real)
    {
        if (filters == Filters::Hollow)
            for (const std::string& name : _engine.getFilters()) {
                const auto hollow = boost::make_shared<Hollow>(_engine, name);
                if (!_engine.deleteFilter(name) || !_engine.createFilter(hollow))
                    throw std::runtime_error("a filter cannot be replaced");
            }
        for (const cv::Mat& frame : frames)
            _frames.push_back(
                boost::make_shared<Data>(boost::make_shared<ZR::Corvale::Type::ColorImage>(frame)));
        rk::os::setClock([this](timeval* time) {
            *time = {_microseconds / 1000000, _microseconds % 1000000};
            return 0;
        });
        if (!_engine.loadProgramFromFile(EXAMPLES "/programs/pedestrians.fgs"))
            throw std::runtime_error("the program does not load");
    }
    ~Program() { rk::os::setClock({}); }

    // The drawing and the boxes of the next frame.
    void step()
    {
        _microseconds += 100000;
        _engine.setData("camera", _frames[_next++ % _frames.size()]);
        benchmark::DoNotOptimize(_engine.getData("background:image"));
        _drawing = _engine.getData("pedestrians:drawing");
        benchmark::DoNotOptimize(_engine.getLastData("pedestrians:boxes"));
    }
    bool draws() const { return static_cast<bool>(_drawing); }

private:
    long long _microseconds = 1000000000;
    std::size_t _next = 0;
    Values _frames;
    boost::shared_ptr<Data> _drawing;
    ZR::Corvale::Corvale _engine{0};
};

// The same steps as a user of OpenCV would write them, every buffer kept from frame to frame.
class ByHand
{
public:
    explicit ByHand(const Frames& frames) : _frames(frames) {}

    void step()
    {
        const cv::Mat& frame = _frames[_next++ % _frames.size()];
        cv::bitwise_not(frame, _dark);
        _people.apply(_dark);
        _traces.apply(_people.rest);
        cv::bitwise_not(_traces.rest, _background);

        cv::absdiff(frame, _background, _different);
        cv::cvtColor(_different, _grey, cv::COLOR_RGB2GRAY);
        cv::threshold(_grey, _moved, 40, 255, cv::THRESH_BINARY);
        morph(cv::MORPH_OPEN, 3);
        morph(cv::MORPH_CLOSE, 5);
        const int count = cv::connectedComponentsWithStats(_moved, _labels, _stats, _centres, 4, CV_32S);
        frame.copyTo(_drawing);
        for (int label = 1; label < count; ++label)
            mark(label);
        benchmark::DoNotOptimize(_drawing.data);
    }

private:
    // Keeps what stays: a slow mean, its lesser with the picture, and a calm mean of that.
    struct Forget
    {
        double slowness;
        cv::Mat slow, slowPicture, lesser, calm, rest;

        void apply(const cv::Mat& picture)
        {
            mean(picture, slow, slowPicture, slowness);
            cv::min(slowPicture, picture, lesser);
            mean(lesser, calm, rest, 0.25);
        }
        static void mean(const cv::Mat& picture, cv::Mat& mean, cv::Mat& out, double weight)
        {
            if (mean.empty())
                picture.convertTo(mean, CV_32F);
            else
                cv::accumulateWeighted(picture, mean, weight);
            mean.convertTo(out, CV_8U);
        }
    };

    void morph(int operation, int size)
    {
        cv::morphologyEx(_moved, _moved, operation, cv::getStructuringElement(cv::MORPH_RECT, {size, size}));
    }

    void mark(int label)
    {
        const int* stats = _stats.ptr<int>(label);
        const cv::Rect box(stats[cv::CC_STAT_LEFT], stats[cv::CC_STAT_TOP], stats[cv::CC_STAT_WIDTH],
                           stats[cv::CC_STAT_HEIGHT]);
        const double ratio = static_cast<double>(box.width) / box.height;
        if (stats[cv::CC_STAT_AREA] < 80 || stats[cv::CC_STAT_AREA] > 2000 || ratio < 0.15 || ratio > 1.5)
            return;
        cv::rectangle(_drawing, box, {255, 0, 0});
        cv::drawMarker(_drawing, cv::Point2d(*_centres.ptr<cv::Vec2d>(label)), {0, 255, 0}, cv::MARKER_CROSS,
                       7);
    }

    const Frames& _frames;
    std::size_t _next = 0;
    Forget _people{0.015625, {}, {}, {}, {}, {}}, _traces{0.0625, {}, {}, {}, {}, {}};
    cv::Mat _dark, _background, _different, _grey, _moved, _labels, _stats, _centres, _drawing;
};

template <typename Steps, typename... Options>
void run(benchmark::State& state, Options... options)
{
    const Frames frames = readFrames({768, 576});
    Steps steps(frames, options...);
    for (int i = 0; i < 10; ++i) // until there is a background
        steps.step();
    for (auto _ : state)
        steps.step();
    if constexpr (std::is_same_v<Steps, Program>)
        if (!steps.draws())
            state.SkipWithError("nothing is drawn");
}

} // namespace

int main(int argc, char** argv)
{
    rk::log::setLevel(rk::log::Warning);
    cv::setNumThreads(1);
    benchmark::RegisterBenchmark("engine", run<Program>)->Iterations(200)->Repetitions(3);
    benchmark::RegisterBenchmark("byHand", run<ByHand>)->Iterations(200)->Repetitions(3);
    benchmark::RegisterBenchmark("hollow", run<Program, Filters>, Filters::Hollow)
        ->Iterations(2000)
        ->Repetitions(3);
    benchmark::Initialize(&argc, argv);
    RatioTable table(RatioTable::Detail::TableOnly);
    benchmark::RunSpecifiedBenchmarks(&table);

    std::cout << std::left << std::setw(58) << "least of three runs; ns per frame" << std::right
              << std::setw(12) << "ours" << std::setw(12) << "peer" << std::setw(10) << "ratio"
              << std::setw(10) << "at most"
              << "\n";
    table.row(std::cout, "pedestrians.fgs, 768 x 576, against OpenCV by hand", "engine", "byHand", 1.0);
    table.row(std::cout, "the engine's own share: filters that do nothing", "hollow", "engine", 0.01);
    return table.verdict(std::cout);
}
