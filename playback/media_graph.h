#pragma once
// The player's one door to an audio back end: a graph that renders one file.
// A new graph is made for every track; the core never sees the back end.
#include <QString>
#include <memory>
#include <optional>

namespace sonorit {

enum class GraphState { Stopped = 0, Paused = 1, Running = 2 };

class MediaGraph {
public:
    virtual ~MediaGraph() = default;

    // Builds the whole decoding chain for the file; false when it cannot.
    virtual bool renderFile(const QString& path) = 0;
    virtual bool run() = 0;
    virtual bool pause() = 0;
    virtual bool stop() = 0;
    // The state within the time-out; nothing when the graph cannot tell.
    virtual std::optional<GraphState> state(int timeoutMs) = 0;
    // Seconds; nothing when unknown.
    virtual std::optional<double> duration() = 0;
    virtual std::optional<double> position() = 0;
    virtual bool setPosition(double seconds) = 0;
    // Hundredths of a decibel: 0 is full, -7000 is -70 dB.
    virtual bool setVolume(int hundredthsDb) = 0;
    // -10000 (left) .. 10000 (right).
    virtual bool setBalance(int balance) = 0;
};

class MediaGraphFactory {
public:
    virtual ~MediaGraphFactory() = default;
    // A new, empty graph; null when the back end is not available.
    virtual std::unique_ptr<MediaGraph> create() = 0;
};

}  // namespace sonorit
