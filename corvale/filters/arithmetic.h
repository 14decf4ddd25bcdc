#pragma once

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"

#include <vector>

namespace ZR::Corvale::Filters {

// What the filters with two operands share. They differ in an operation: a class with a call operator for
// two numbers, and one for two components of pixels where that is another thing.

/// The guards of a filter that combines two numbers or two images, like with like.
std::vector<Guard> operandGuards(const Kinds& operands);

/// Combines two numbers of one kind; null if they are none.
template <typename Operation>
boost::shared_ptr<Data> combinedNumbers(const boost::shared_ptr<Data>& left,
                                        const boost::shared_ptr<Data>& right)
{
    const Operation operation = Operation();
    switch (left->getType()) {
    case DataType::Integer:
        return boost::make_shared<Data>(operation(number<int>(left), number<int>(right)));
    case DataType::Float:
        return boost::make_shared<Data>(operation(number<float>(left), number<float>(right)));
    case DataType::Double:
        return boost::make_shared<Data>(operation(number<double>(left), number<double>(right)));
    default:
        return boost::shared_ptr<Data>();
    }
}

/// Combines each component of two matrices of one size and type.
template <typename Component, typename Operation>
cv::Mat combinedComponents(const cv::Mat& left, const cv::Mat& right)
{
    cv::Mat result = newMatrix(left.size(), left.type());
    forEachComponentRow<const Component, const Component, Component>(
        [](std::size_t components, const Component* left, const Component* right, Component* result) {
            for (std::size_t i = 0; i < components; ++i)
                result[i] = Operation()(left[i], right[i]);
        },
        left, right, result);
    return result;
}

template <typename Operation>
cv::Mat combinedPixels(const cv::Mat& left, const cv::Mat& right)
{
    return left.depth() == CV_16U ? combinedComponents<ushort, Operation>(left, right)
                                  : combinedComponents<uchar, Operation>(left, right);
}

/// The result for two admitted operands of one kind. An image gets no origin; images of different size are
/// refused.
template <typename Operation>
Values combine(const Values& inputs, const InputGuards& guards)
{
    if (const boost::shared_ptr<Data> number = combinedNumbers<Operation>(inputs[0], inputs[1]))
        return one(number);
    const cv::Mat left = dataToCvMat(inputs[0]);
    const cv::Mat right = dataToCvMat(inputs[1]);
    if (left.size() != right.size())
        return guards.refuse();
    return one(cvMatToData(combinedPixels<Operation>(left, right), inputs[0]->getType()));
}

} // namespace ZR::Corvale::Filters
