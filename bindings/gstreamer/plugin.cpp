/// What GStreamer loads.
#include "elements.h"

namespace {

gboolean plugin_init(GstPlugin* plugin) {
  const bool both =
      GST_ELEMENT_REGISTER(qvndemosaic, plugin) != FALSE && GST_ELEMENT_REGISTER(qvnconvert, plugin) != FALSE;
  return both ? TRUE : FALSE;
}

}  // namespace

GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, quorvane,
                  "Byte-exact conversions of frames from industrial cameras", plugin_init, VERSION, "MIT/X11",
                  "quorvane", PACKAGE_ORIGIN)
