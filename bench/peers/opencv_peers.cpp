// OpenCV.
#include <array>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "peers/peers.h"

namespace {

cv::Mat mat(uint8_t* bytes, uint32_t width, uint32_t height, int type) {
  return {static_cast<int>(height), static_cast<int>(width), type, bytes};
}

Conversion colour(int code, int from, int to) {
  return [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
    cv::Mat out = mat(dst, width, height, to);
    cv::cvtColor(mat(src, width, height, from), out, code);
  };
}

Conversion resize(int type, int interpolation, uint32_t numerator, uint32_t denominator) {
  return [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
    cv::Mat out = mat(dst, width / denominator * numerator, height, type);
    cv::resize(mat(src, width, height, type), out, out.size(), 0, 0, interpolation);
  };
}

// Axes as OpenCV counts them: 0 lines, 1 columns, -1 both. In place.
Conversion flip(int type, int axis) {
  return [=](uint8_t* dst, uint8_t*, uint32_t width, uint32_t height) {
    cv::Mat frame = mat(dst, width, height, type);
    cv::flip(frame, frame, axis);
  };
}

// The demosaicked picture goes through `step` into dst.
template <class Step>
Conversion demosaic_then(int bayer, int picture, Step step) {
  return [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
    thread_local cv::Mat between;
    cv::cvtColor(mat(src, width, height, bayer), between, cv::COLOR_BayerBG2BGR);
    cv::Mat out = mat(dst, width, height, picture);
    step(between, out);
  };
}

void matrix(const cv::Mat& in, cv::Mat& out) {
  static const cv::Matx33f weights(1.4F, -0.4F, 0, -0.1F, 1.3F, -0.2F, -0.1F, -0.3F, 1.4F);
  cv::transform(in, out, weights);
}

void table(const cv::Mat& in, cv::Mat& out) {
  static const cv::Mat entries = [] {
    cv::Mat all(1, 256, CV_8U);
    for (int i = 0; i < 256; ++i) all.at<uint8_t>(i) = static_cast<uint8_t>(255 - i);
    return all;
  }();
  cv::LUT(in, entries, out);
}

void split(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const size_t plane = size_t{width} * height;
  std::array planes = {mat(dst, width, height, CV_8UC1), mat(dst + plane, width, height, CV_8UC1),
                       mat(dst + 2 * plane, width, height, CV_8UC1)};
  cv::split(mat(src, width, height, CV_8UC3), planes.data());
}

void top_bytes(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  cv::Mat out = mat(dst, width, height, CV_8UC1);
  mat(src, width, height, CV_16UC1).convertTo(out, CV_8U, 1.0 / 256);
}

// The rows of one field, a pitch of two lines apart.
void weave(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  const uint32_t lines = height / 2;
  for (const uint32_t field : {0U, 1U}) {
    cv::Mat out(static_cast<int>(lines), static_cast<int>(width), CV_8UC1, dst + size_t{field} * width,
                size_t{2} * width);
    mat(src + size_t{1 - field} * lines * width, width, lines, CV_8UC1).copyTo(out);
  }
}

}  // namespace

void add_opencv(std::vector<Peer>& peers) {
  cv::setNumThreads(1);
  const auto add = [&](const char* row, const char* name, Conversion conversion) {
    peers.push_back({row, name, std::move(conversion)});
  };

  // Demosaics. BG is OpenCV's name for R G over G B.
  const Conversion bilinear = colour(cv::COLOR_BayerBG2BGR, CV_8UC1, CV_8UC3);
  const Conversion edge_aware = colour(cv::COLOR_BayerBG2BGR_EA, CV_8UC1, CV_8UC3);
  const Conversion gradients = colour(cv::COLOR_BayerBG2BGR_VNG, CV_8UC1, CV_8UC3);
  for (const char* row : {"Raw8ToBGR", "Raw8ToBGR_3x3", "Raw8ImageTransform_BGR"}) {
    add(row, "OpenCV-bilinear", bilinear);
  }
  for (const char* row : {"Raw8ToBGR_IntYUV422", "Raw8ToBGR_IntLCAA", "Raw8ToBGR_IntLCAAV"}) {
    add(row, "OpenCV-edge-aware", edge_aware);
    add(row, "OpenCV-gradients", gradients);
  }
  for (const char* row : {"Raw8ToY8", "Raw8ImageTransform_Y8"}) {
    add(row, "OpenCV-bilinear", colour(cv::COLOR_BayerBG2GRAY, CV_8UC1, CV_8UC1));
  }
  for (const char* row : {"Raw8ImageTransform_BGRA", "Raw8ImageTransform_3x3_BGRA"}) {
    add(row, "OpenCV-bilinear", colour(cv::COLOR_BayerBG2BGRA, CV_8UC1, CV_8UC4));
  }
  for (const char* row : {"Raw16ToBGR16", "Raw16ImageTransformEx_BGR16", "Raw16ImageTransformEx_be_BGR16"}) {
    add(row, "OpenCV-bilinear", colour(cv::COLOR_BayerBG2BGR, CV_16UC1, CV_16UC3));
  }
  for (const char* row : {"Raw16ToY16", "Raw16ImageTransformEx_Y16", "Raw16ImageTransformEx_be_Y16"}) {
    add(row, "OpenCV-bilinear", colour(cv::COLOR_BayerBG2GRAY, CV_16UC1, CV_16UC1));
  }
  for (const char* row : {"Raw16ToBGR", "Raw16ImageTransform_BGR"}) {
    add(row, "OpenCV-two-steps", demosaic_then(CV_16UC1, CV_8UC3, [](const cv::Mat& in, cv::Mat& out) {
          in.convertTo(out, CV_8U, 1.0 / 256);
        }));
  }
  add("Raw8ToBGR_CC_float", "OpenCV-two-steps", demosaic_then(CV_8UC1, CV_8UC3, matrix));
  add("Raw16ToBGR16_CC_float", "OpenCV-two-steps", demosaic_then(CV_16UC1, CV_16UC3, matrix));
  add("Raw8ToBGR_CC_table", "OpenCV-two-steps", demosaic_then(CV_8UC1, CV_8UC3, table));

  // Runs.
  add("YUV444ToBGR", "OpenCV", colour(cv::COLOR_YUV2BGR, CV_8UC3, CV_8UC3));
  add("YUV422ToBGR", "OpenCV", colour(cv::COLOR_YUV2BGR_UYVY, CV_8UC2, CV_8UC3));
  add("YUV422ImageTransform_BGRA", "OpenCV", colour(cv::COLOR_YUV2BGRA_UYVY, CV_8UC2, CV_8UC4));
  for (const char* row : {"RGB8ToBGR", "RGB8ImageTransform_BGR"}) {
    add(row, "OpenCV", colour(cv::COLOR_RGB2BGR, CV_8UC3, CV_8UC3));
  }
  add("RGB8ImageTransform_BGRA", "OpenCV", colour(cv::COLOR_RGB2BGRA, CV_8UC3, CV_8UC4));
  add("RGBA8ImageTransform_BGR", "OpenCV", colour(cv::COLOR_RGBA2BGR, CV_8UC4, CV_8UC3));
  add("RGBA8ImageTransform_BGRA", "OpenCV", colour(cv::COLOR_RGBA2BGRA, CV_8UC4, CV_8UC4));
  for (const char* row : {"RGB8ToY8", "RGB8ImageTransform_Y8", "RGB8ImageTransform_Y8Rounded"}) {
    add(row, "OpenCV", colour(cv::COLOR_RGB2GRAY, CV_8UC3, CV_8UC1));
  }
  add("RGBA8ImageTransform_Y8", "OpenCV", colour(cv::COLOR_RGBA2GRAY, CV_8UC4, CV_8UC1));
  for (const char* row : {"Y8ToBGR", "Y8ImageTransform_BGR"}) {
    add(row, "OpenCV", colour(cv::COLOR_GRAY2BGR, CV_8UC1, CV_8UC3));
  }
  add("Y8ImageTransform_BGRA", "OpenCV", colour(cv::COLOR_GRAY2BGRA, CV_8UC1, CV_8UC4));
  for (const char* row : {"Y16ImageTransformEx_BGR16", "Y16ImageTransformEx_be_BGR16"}) {
    add(row, "OpenCV", colour(cv::COLOR_GRAY2BGR, CV_16UC1, CV_16UC3));
  }
  for (const char* row : {"Y16ToY8", "Y16ToY8_MMX", "Y16ToY8Ex_top", "Y16ImageTransformEx_Y8",
                          "Y16ImageTransformEx_be_Y8", "Y16ImageTransformEx_top_Y8"}) {
    add(row, "OpenCV", top_bytes);
  }
  add("RGB8ToRGBYPlanes_no_luma", "OpenCV", split);

  // Geometry.
  const struct {
    const char* element;
    int type;
  } kElements[] = {{"1", CV_8UC1}, {"2", CV_16UC1}, {"3", CV_8UC3}, {"6", CV_16UC3}};
  for (const auto& [element, type] : kElements) {
    const auto named = [&, name = std::string(element)](const char* row, Conversion conversion) {
      peers.push_back({row + name, "OpenCV", std::move(conversion)});
    };
    named("ResampleScanlines_nearest_", resize(type, cv::INTER_NEAREST, 5, 4));
    named("ResampleScanlines_nearest_half_", resize(type, cv::INTER_NEAREST, 1, 2));
    named("Flip_horizontal_", flip(type, 1));
    named("Flip_both_", flip(type, -1));
  }
  // Words are no bytes treated alike: OpenCV interpolates numbers, so only bytes are the same work.
  add("ResampleScanlines_linear_1", "OpenCV", resize(CV_8UC1, cv::INTER_LINEAR, 5, 4));
  add("ResampleScanlines_linear_3", "OpenCV", resize(CV_8UC3, cv::INTER_LINEAR, 5, 4));
  for (const char* row : {"Flip_vertical_1", "FlipVertical"}) add(row, "OpenCV", flip(CV_8UC1, 0));
  add("InterlacedToProgressive", "OpenCV", weave);
}
