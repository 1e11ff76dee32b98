#include "gst_encoders.h"

#include <gst/gst.h>

#include "gst_duration_probe.h"

namespace sonorit {

bool Wma_Encoder_Available()
{
    if (!ensureGstreamer())
        return false;
    GstElementFactory* factory = gst_element_factory_find("avenc_wmav2");
    if (!factory)
        return false;
    gst_object_unref(factory);
    return true;
}

}  // namespace sonorit
