#include "filters/pictures.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include <stdexcept>
#include <vector>

namespace {

cv::Mat resized(const cv::Mat& picture, const cv::Size& size)
{
    cv::Mat result;
    cv::resize(picture, result, size, 0.0, 0.0, cv::INTER_LINEAR);
    return result;
}

cv::Mat readPicture(const std::string& path)
{
    const cv::Mat picture = cv::imread(path, cv::IMREAD_UNCHANGED);
    if (picture.empty())
        throw std::runtime_error("cannot read " + path);
    return picture;
}

std::vector<cv::Mat> readVideo(const std::string& path)
{
    cv::VideoCapture video(path);
    std::vector<cv::Mat> frames;
    for (cv::Mat frame; video.read(frame);) {
        frames.emplace_back();
        cv::cvtColor(frame, frames.back(), cv::COLOR_BGR2RGB);
    }
    if (frames.size() < 60)
        throw std::runtime_error("cannot read " + path);
    return frames;
}

// What differs from the mean of the video.
cv::Mat movementIn(const cv::Mat& frame, const std::vector<cv::Mat>& frames)
{
    cv::Mat sum = cv::Mat::zeros(frame.size(), CV_32FC3), mean, difference;
    for (const cv::Mat& other : frames)
        cv::accumulate(other, sum);
    sum.convertTo(mean, CV_8U, 1.0 / static_cast<double>(frames.size()));
    cv::absdiff(frame, mean, difference);
    cv::cvtColor(difference, difference, cv::COLOR_RGB2GRAY);
    return difference;
}

} // namespace

Pictures::Pictures(const std::string& folder, const cv::Size& size) : size(size)
{
    const std::vector<cv::Mat> frames = readVideo(folder + "/pedestrians.avi");
    colour = resized(frames[50], size);
    colourBefore = resized(frames[45], size);
    cv::cvtColor(colour, grey, cv::COLOR_RGB2GRAY);
    cv::cvtColor(colourBefore, greyBefore, cv::COLOR_RGB2GRAY);
    const cv::Mat room = readPicture(folder + "/motorcycle-depth.png");
    cv::resize(room, depth, size, 0.0, 0.0, cv::INTER_NEAREST); // between distances lies nothing
    cv::subtract(depth, cv::Scalar(500), depthNearer);

    cv::threshold(resized(movementIn(frames[50], frames), size), movement, 30, 255, cv::THRESH_BINARY);
    cv::adaptiveThreshold(grey, texture, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY, 15, 0);
    cv::threshold(resized(readPicture(folder + "/coins.png"), size), blobs, 0, 255, cv::THRESH_OTSU);
    cv::connectedComponents(movement, people, 4);
    cv::connectedComponents(texture, grains, 4);
}
