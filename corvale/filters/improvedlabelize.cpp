#include "corvale/filters/improvedlabelize.h"

#include "corvale/data/truncate.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/labelling.h"
#include "corvale/filters/morphology.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.labelize");
const Kinds kinds{DataType::BinaryImage, DataType::DepthImage, DataType::GrayscaleImage};
const Kinds growing{DataType::BinaryImage, DataType::DepthImage, DataType::GrayscaleImage,
                    DataType::ColorImage, DataType::XYZImage};
const InputGuards guards(category, "ImprovedLabelize",
                         {Guard::count(5), Guard::present(2), Guard::present(3), Guard::present(4),
                          Guard::kind(0, growing), Guard::intact(0), Guard::that([](const Values& inputs) {
                              const cv::Mat image = dataToCvMat(inputs[0]);
                              return !image.empty() && Labelling::canCount(image);
                          })});
const InputGuards labelGuards(category, "Labelize", {Guard::kind(0, kinds)});

} // namespace

ImprovedLabelize::ImprovedLabelize() : FilterPrimitive("ImprovedLabelize")
{
    accept(_addInput("inputImage"), kinds);
    const boost::shared_ptr<Port> tolerance = _addInput("tolerance");
    accept(tolerance, {DataType::Integer});
    tolerance->setOptional(true);
    accept(_addInput("kernel"), {DataType::Integer});
    accept(_addInput("min"), {DataType::Float});
    accept(_addInput("max"), {DataType::Float});
    accept(_addOutput("labelizedImage"), {DataType::LabelImage});
    accept(_addOutput("dilatedImage"), kinds);
}

Values ImprovedLabelize::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dilated(dataToCvMat(inputs[0]), number<int>(inputs[2]));
    Values outputs;
    if (labelGuards.admit(inputs)) {
        Labelling& labelling = Labelling::ofThread();
        labelling.scan(image, inputs[1] ? number<int>(inputs[1]) : 0);
        const float pixels = static_cast<float>(image.total());
        labelling.removeSmallClusters(truncate<int>(pixels * number<float>(inputs[3])),
                                      truncate<int>(pixels * number<float>(inputs[4])));
        outputs.push_back(cvMatToData(labelling.unifyLabels(), DataType::LabelImage, inputs[0]));
    }
    outputs.push_back(cvMatToData(image, inputs[0]->getType(), inputs[0]));
    return outputs;
}

} // namespace ZR::Corvale::Filters
