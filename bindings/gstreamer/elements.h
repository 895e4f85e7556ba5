/// The elements of the plugin.
#pragma once

#include "converter.h"

GType qvn_demosaic_get_type();
GType qvn_convert_get_type();

GST_ELEMENT_REGISTER_DECLARE(qvndemosaic)
GST_ELEMENT_REGISTER_DECLARE(qvnconvert)
