// Peers that stretch lines and mirror frames. Elements are mono and RGB bytes.
#include "peers/peers.h"

#if QVN_PEER_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#if QVN_PEER_LIBYUV
#include <libyuv.h>
#endif

namespace {

#if QVN_PEER_OPENCV
Peer opencv_resize(int type, int interpolation) {
  return {"OpenCV", [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
            const int w = static_cast<int>(width), h = static_cast<int>(height);
            const cv::Mat in(h, w, type, src);
            cv::Mat out(h, w / 4 * 5, type, dst);
            cv::resize(in, out, out.size(), 0, 0, interpolation);
          }};
}
#endif

}  // namespace

std::vector<Peer> stretch_peers(bool rgb, bool linear) {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back(opencv_resize(rgb ? CV_8UC3 : CV_8UC1, linear ? cv::INTER_LINEAR : cv::INTER_NEAREST));
#endif
#if QVN_PEER_LIBYUV
  if (!rgb) {
    peers.push_back({"libyuv", [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                       const int w = static_cast<int>(width), h = static_cast<int>(height);
                       libyuv::ScalePlane(src, w, w, h, dst, w / 4 * 5, w / 4 * 5, h,
                                          linear ? libyuv::kFilterLinear : libyuv::kFilterNone);
                     }});
  }
#endif
  return peers;
}

std::vector<Peer> mirror_peers(bool rgb) {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back({"OpenCV", [=](uint8_t* dst, uint8_t*, uint32_t width, uint32_t height) {
                     cv::Mat frame(static_cast<int>(height), static_cast<int>(width), rgb ? CV_8UC3 : CV_8UC1,
                                   dst);
                     cv::flip(frame, frame, 1);
                   }});
#endif
#if QVN_PEER_LIBYUV
  peers.push_back({"libyuv-copy", [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     const int w = static_cast<int>(width), h = static_cast<int>(height);
                     if (rgb) {
                       libyuv::RGB24Mirror(src, 3 * w, dst, 3 * w, w, h);
                     } else {
                       libyuv::MirrorPlane(src, w, dst, w, w, h);
                     }
                   }});
#endif
  return peers;
}
