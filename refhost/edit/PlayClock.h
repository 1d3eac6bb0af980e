// PlayClock: the transport of the reference host. It plays a Vob's edit at a speed, moving the
// playhead from a timer, and stops at either end of the edit.
#pragma once

#include <functional>
#include <memory>

class Vob;

// Speeds count 1024 as normal play forward (512 half speed, -1024 backward), as TransitStatus
// does. While it plays the Vob's state word holds Vob::kPlaying and TransitStatus has the
// speed; each tick publishes the playhead (setCurrentTime) at the edit time the elapsed real
// time reached, on a frame of the edit's rate. Stopping clears both and publishes the
// playhead once more, so that what was skipped while playing (the stills) is drawn.
class PlayClock {
public:
    explicit PlayClock(Vob* vob);
    ~PlayClock();
    PlayClock(const PlayClock&) = delete;
    PlayClock& operator=(const PlayClock&) = delete;

    // Starts playing, or changes the speed of play; a speed of 0 stops.
    void play(int speed);
    void stop();
    bool isPlaying() const { return playing_; }
    int speed() const { return speed_; }

    // Moves the playhead as `seconds` of real time at the speed would; the timer calls this
    // with the time since its last tick. Stops at the edit's end going forward, at its start
    // going backward.
    void advance(double seconds);

    // Told after each move of the playhead by the clock and when it stops.
    void setTickListener(std::function<void()> listener) { listener_ = std::move(listener); }

private:
    struct Timer;
    Vob* vob_;
    int speed_ = 0;
    bool playing_ = false;
    double exact_ = 0.0; // where the playhead would be without the snap to frames
    std::function<void()> listener_;
    std::unique_ptr<Timer> timer_;
};
