#pragma once

#include "corvale/data/datalambda.h"
#include "corvale/filter/filter.h"
#include "corvale/filter/memorymanager.h"
#include "corvale/filters/builtinfilters.h"
#include "corvale/filters/kinds.h"
#include "corvale/filters/values.h"
#include "corvale/runtime/stringhash.h"
#include "rk/log.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <opencv2/core/utility.hpp>

/// Values of every kind, made of a fuzzer's bytes.
namespace fuzz {

using namespace ZR::Corvale;
using Filters::Values;
using Bytes = FuzzedDataProvider;

// Nobody reads the log, and OpenCV's threads would make two runs differ.
inline const bool quiet = (rk::log::setLevel(0), cv::setNumThreads(1), true);

/// A number of few digits, or any, but for those that are windows of millions of pictures: they only take
/// long.
inline int integer(Bytes& bytes)
{
    const int number = bytes.ConsumeIntegral<int>();
    return bytes.ConsumeBool() || (number > 1000 && number <= 1 << 24) ? number % 128 : number;
}
/// A quotient of these: also infinite, or not a number.
inline float real(Bytes& bytes)
{
    return static_cast<float>(integer(bytes)) / bytes.ConsumeIntegral<signed char>();
}

/// At most 12 x 150 pixels of that type; now and then of another type, or part of a larger matrix.
inline cv::Mat matrix(Bytes& bytes, int type)
{
    const int rows = bytes.ConsumeIntegralInRange(0, 12), columns = bytes.ConsumeIntegralInRange(0, 150);
    const int margin = bytes.ConsumeIntegralInRange(0, 3), oddity = bytes.ConsumeIntegralInRange(0, 255);
    cv::Mat whole(rows, columns + 2 * margin, oddity < CV_16FC4 ? oddity : type);
    std::string pixels = bytes.ConsumeRandomLengthString(96) + '\0';
    const std::size_t size = whole.total() * whole.elemSize();
    while (pixels.size() < size)
        pixels += pixels;
    std::copy_n(pixels.begin(), size, whole.data);
    return whole.colRange(margin, margin + columns);
}

/// One of the built-in filters, and what they keep.
inline MemoryManager memory;
inline const boost::shared_ptr<Filter>& anyFilter(Bytes& bytes)
{
    static const std::vector<boost::shared_ptr<Filter>> filters = Filters::makeBuiltinFilters();
    const boost::shared_ptr<Filter>& filter = filters[bytes.ConsumeIntegralInRange(0ul, filters.size() - 1)];
    filter->bindMemoryManager(&memory);
    return filter;
}

/// A value of that kind, or of any; it holds nothing if filters do not look into it.
inline boost::shared_ptr<Data> anything(Bytes& bytes);
inline boost::shared_ptr<Data> value(Bytes& bytes, DataType kind)
{
    auto made = boost::make_shared<Data>(boost::shared_ptr<Type::MatrixImage>());
    const auto is = [kind, &made](DataType choice, const auto& content) {
        if (kind == choice)
            made = boost::make_shared<Data>(content());
    };
    is(DataType::Boolean, [&] { return bytes.ConsumeBool(); });
    is(DataType::Integer, [&] { return integer(bytes); });
    is(DataType::Float, [&] { return real(bytes); });
    is(DataType::String, [&] { return bytes.ConsumeRandomLengthString(8); });
    is(DataType::Vector2, [&] { return Type::Vector2{real(bytes), real(bytes)}; });
    is(DataType::Region2, [&] { return Type::Region2{real(bytes), real(bytes), real(bytes), real(bytes)}; });
    is(DataType::Lambda, [&] { return Type::Lambda::createLambda(anyFilter(bytes)); });
    is(DataType::Array, [&] {
        Values elements;
        while (bytes.ConsumeIntegralInRange(0, 3) != 0)
            elements.push_back(anything(bytes));
        return elements;
    });
    Filters::visitImageClass(kind, [&](auto imageClass) {
        using Image = typename decltype(imageClass)::type;
        made = boost::make_shared<Data>(boost::make_shared<Image>(matrix(bytes, Image::MatType)));
    });
    return made;
}
inline boost::shared_ptr<Data> anything(Bytes& bytes)
{
    const int kind = bytes.ConsumeIntegralInRange<int>(-1, DataType::Lambda);
    return kind < 0 ? nullptr : value(bytes, static_cast<DataType>(kind));
}

/// Reads all of a value.
inline void inspect(const boost::shared_ptr<Data>& value)
{
    if (!value || value->toString().empty())
        return;
    Filters::visitImageClass(value->getType(), [&](auto imageClass) {
        Filters::payload<typename decltype(imageClass)::type>(value)->clone();
    });
}

} // namespace fuzz
