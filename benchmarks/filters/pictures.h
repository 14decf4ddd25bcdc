#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

/// What the filters are measured on: the recordings of examples/data, resized.
struct Pictures
{
    /// Reads them from `folder` and resizes them. Throws `std::runtime_error` if one is missing.
    Pictures(const std::string& folder, const cv::Size& size);

    cv::Size size;
    cv::Mat colour, colourBefore; // two frames of a video, five apart; red, green, blue
    cv::Mat grey, greyBefore;     // the same in grey
    cv::Mat depth, depthNearer;   // a room, and the same half a metre nearer
    cv::Mat movement;             // a mask of the people who walk through the first frame: few regions
    cv::Mat texture;              // one of what is brighter than its surroundings: regions everywhere
    cv::Mat blobs;                // one of coins: large regions
    cv::Mat people, grains;       // images of labels: the regions of `movement` and of `texture`
};
