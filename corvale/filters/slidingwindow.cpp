#include "corvale/filters/slidingwindow.h"

#include "corvale/filter/memorymanager.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/divisor.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/stringhash.h"
#include "rk/log.h"

#include <algorithm>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.slidingwindow");
const Kinds kinds{DataType::ColorImage, DataType::GrayscaleImage, DataType::DepthImage};

constexpr int longest = 1 << 24; // images; beyond, the list of them alone would fill the memory

// The window's size as far as a component holds it.
unsigned int divisorOf(const Values& inputs)
{
    const auto size = static_cast<unsigned int>(number<int>(inputs[1]));
    return inputs[0] && inputs[0]->getType() == DataType::DepthImage ? size % 65536 : size % 256;
}

const InputGuards
    sizeGuards(category, "SlidingWindow",
               {Guard::count(2).quietly(), Guard::kind(1, {DataType::Integer}).quietly(),
                Guard::that([](const Values& inputs) { return number<int>(inputs[1]) != 0; }).quietly(),
                Guard::that([](const Values& inputs) {
                    const int size = number<int>(inputs[1]);
                    return size > 0 && size <= longest && divisorOf(inputs) != 0;
                })});
const InputGuards imageGuards(category, "SlidingWindow", {Guard::kind(0, kinds), Guard::intact(0)});

// Whether `memory` is a window of so many images of the kind of `image`.
bool isWindow(const boost::shared_ptr<Data>& memory, std::size_t size, const boost::shared_ptr<Data>& image)
{
    if (!image || memory->getType() != DataType::Array)
        return false;
    const Values& window = *payload<Values>(memory);
    return window.size() == size && std::all_of(window.begin(), window.end(), [&](const auto& frame) {
               return frame && frame->getType() == image->getType();
           });
}

template <typename Component>
void addTerms(const cv::Mat& frame, const Divisor& divisor, cv::Mat& sums)
{
    forEachComponentRow<const Component, Component>(
        [divisor](std::size_t components, const Component* frame, Component* sums) {
            const Divisor each = divisor; // a local one, which no store into an image can change
            for (std::size_t i = 0; i < components; ++i)
                sums[i] = static_cast<Component>(sums[i] + each.quotient(frame[i]));
        },
        frame, sums);
}

// Puts the newest image in the place of the oldest, and its terms into the sums.
template <typename Component>
void exchange(const cv::Mat& newest, const Divisor& divisor, cv::Mat& oldest, cv::Mat& sums, cv::Mat& out)
{
    forEachComponentRow<const Component, Component, Component, Component>(
        [divisor](std::size_t components, const Component* newest, Component* oldest, Component* sums,
                  Component* out) {
            const Divisor each = divisor;
            for (std::size_t i = 0; i < components; ++i) {
                const Component entering = newest[i];
                sums[i] =
                    static_cast<Component>(sums[i] - each.quotient(oldest[i]) + each.quotient(entering));
                out[i] = sums[i];
                oldest[i] = entering;
            }
        },
        newest, oldest, sums, out);
}

// Moves the window on by an image and gives the mean; makes the sums if there are none yet.
template <typename Component>
cv::Mat moveOn(const boost::shared_ptr<Data>& image, const Divisor& divisor, Values& window, cv::Mat& sums)
{
    const cv::Mat in = dataToCvMat(image);
    if (sums.empty()) {
        sums = cv::Mat::zeros(in.size(), in.type());
        for (const boost::shared_ptr<Data>& frame : window)
            addTerms<Component>(dataToCvMat(frame), divisor, sums);
    }
    // What may throw stands before what changes the window.
    const boost::shared_ptr<Data>& oldest = window.front();
    cv::Mat pixels = dataToCvMat(oldest.unique() ? oldest : cloned(oldest)); // at first all share one image
    boost::shared_ptr<Data> newest = cvMatToData(pixels, image->getType(), image);
    cv::Mat mean = newMatrix(in.size(), in.type());
    exchange<Component>(in, divisor, pixels, sums, mean);
    window.front().swap(newest);
    std::rotate(window.begin(), window.begin() + 1, window.end());
    return mean;
}

} // namespace

SlidingWindow::SlidingWindow() : FilterPrimitive("SlidingWindow")
{
    accept(_addInput("in"), kinds);
    accept(_addInput("size"), {DataType::Integer});
    _addOutput("out");
}

// Beside the window, at a place of their own, lie the sums of its terms: an image costs the same whatever
// the size of the window.
Values SlidingWindow::applyFilter(const Values& inputs, const StringHash& processHash,
                                  const StringHash& scopeHash, long long)
{
    if (!sizeGuards.admit(inputs))
        return {};
    const auto size = static_cast<std::size_t>(number<int>(inputs[1]));
    const boost::shared_ptr<Data> memory = _memoryManager->getData(processHash, scopeHash);
    if (memory && !isWindow(memory, size, inputs[0]))
        return {};
    if (!imageGuards.admit(inputs))
        return {};
    const StringHash sumsHash = StringHash::extended(scopeHash, "/sums");
    if (!memory) {
        const auto window = boost::make_shared<Data>(Values(size, cloned(inputs[0])));
        _memoryManager->setData(processHash, sumsHash, nullptr);
        _memoryManager->setData(processHash, scopeHash, window);
        return one(inputs[0]);
    }

    Values& window = *payload<Values>(memory);
    if (dataToCvMat(inputs[0]).size() != dataToCvMat(window.back()).size())
        return imageGuards.refuse();
    const DataType kind = inputs[0]->getType();
    const boost::shared_ptr<Data> kept = _memoryManager->getData(processHash, sumsHash);
    cv::Mat sums = kept ? dataToCvMat(kept) : cv::Mat();
    const Divisor divisor(divisorOf(inputs));
    const cv::Mat mean = kind == DataType::DepthImage ? moveOn<ushort>(inputs[0], divisor, window, sums)
                                                      : moveOn<uchar>(inputs[0], divisor, window, sums);
    if (!kept)
        _memoryManager->setData(processHash, sumsHash, cvMatToData(sums, kind));
    return one(cvMatToData(mean, kind));
}

void SlidingWindow::forget(const StringHash& processHash, const StringHash& scopeHash)
{
    if (_memoryManager)
        _memoryManager->setData(processHash, scopeHash, nullptr);
}

} // namespace ZR::Corvale::Filters
