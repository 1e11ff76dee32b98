#pragma once
// The player's media graph on GStreamer: one playbin per track, audio only,
// with a balance stage in front of its audio sink.
#include <QString>

#include "playback/media_graph.h"

typedef struct _GstElement GstElement;

namespace sonorit {

class GstMediaGraph : public MediaGraph {
public:
    // `sink` as the factory takes it; isUsable() tells whether GStreamer and
    // the sink are there.
    explicit GstMediaGraph(const QString& sink);
    ~GstMediaGraph() override;
    GstMediaGraph(const GstMediaGraph&) = delete;
    GstMediaGraph& operator=(const GstMediaGraph&) = delete;

    bool isUsable() const { return playbin_ != nullptr; }
    // The audio sink element, so that a caller may watch what reaches it.
    GstElement* audioSink() const { return sink_; }

    bool renderFile(const QString& path) override;
    bool run() override;
    bool pause() override;
    bool stop() override;
    std::optional<GraphState> state(int timeoutMs) override;
    std::optional<double> duration() override;
    std::optional<double> position() override;
    bool setPosition(double seconds) override;
    bool setVolume(int hundredthsDb) override;
    bool setBalance(int balance) override;

private:
    // Takes the waiting bus messages; true when one of them is an error.
    bool drainBus();
    bool ready();
    bool setState(int state);
    GstElement* makeOutput();

    GstElement* playbin_ = nullptr;
    GstElement* sink_ = nullptr;
    GstElement* panorama_ = nullptr;
    bool rendered_ = false;
    bool failed_ = false;
    std::optional<double> duration_;  // known once prerolled
};

class GstMediaGraphFactory : public MediaGraphFactory {
public:
    // `sink`: "" for the desktop's default output, an element name such as
    // "fakesink" (which then keeps real time), or a launch description of
    // one element with its properties ("fakesink sync=false").
    explicit GstMediaGraphFactory(QString sink = {}) : sink_(std::move(sink)) {}
    std::unique_ptr<MediaGraph> create() override;

private:
    QString sink_;
};

// Linear gain of playbin for a volume in hundredths of a decibel.
double linearVolume(int hundredthsDb);

}  // namespace sonorit
