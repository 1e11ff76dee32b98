#include "wma_maker.h"

#include <QFile>

#include <gst/gst.h>

#include "platform/gstreamer/gst_duration_probe.h"

namespace sonorit::test {

bool writeWma(const QString& path, double seconds)
{
    if (!ensureGstreamer())
        return false;
    const int buffers = int(seconds * 44100 / 1024);
    const QByteArray launch = QStringLiteral(
        "audiotestsrc num-buffers=%1 samplesperbuffer=1024 ! audio/x-raw,rate=44100,channels=2 ! audioconvert "
        "! avenc_wmav2 bitrate=128000 ! avmux_asf ! filesink name=out")
                                  .arg(buffers)
                                  .toUtf8();
    GError* error = nullptr;
    GstElement* pipeline = gst_parse_launch(launch.constData(), &error);
    g_clear_error(&error);
    if (!pipeline)
        return false;
    GstElement* out = gst_bin_get_by_name(GST_BIN(pipeline), "out");
    g_object_set(out, "location", QFile::encodeName(path).constData(), nullptr);
    gst_object_unref(out);
    bool ok = gst_element_set_state(pipeline, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
    if (ok) {
        GstBus* bus = gst_element_get_bus(pipeline);
        GstMessage* m = gst_bus_timed_pop_filtered(bus, 10 * GST_SECOND,
                                                   GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
        ok = m && GST_MESSAGE_TYPE(m) == GST_MESSAGE_EOS;
        if (m)
            gst_message_unref(m);
        gst_object_unref(bus);
    }
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return ok && QFile(path).size() > 0;
}

}  // namespace sonorit::test
