#pragma once
// A media graph that renders nothing: every operation succeeds, the state is
// always "stopped" and nothing is known of time. The command line fills and
// steps the playlist with it where no sound is wanted, and benchmarks
// measure the core alone.
#include "playback/media_graph.h"

namespace sonorit {

class SilentMediaGraph final : public MediaGraph {
public:
    bool renderFile(const QString&) override { return true; }
    bool run() override { return true; }
    bool pause() override { return true; }
    bool stop() override { return true; }
    std::optional<GraphState> state(int) override { return GraphState::Stopped; }
    std::optional<double> duration() override { return std::nullopt; }
    std::optional<double> position() override { return std::nullopt; }
    bool setPosition(double) override { return true; }
    bool setVolume(int) override { return true; }
    bool setBalance(int) override { return true; }
};

class SilentGraphFactory final : public MediaGraphFactory {
public:
    std::unique_ptr<MediaGraph> create() override { return std::make_unique<SilentMediaGraph>(); }
};

}  // namespace sonorit
