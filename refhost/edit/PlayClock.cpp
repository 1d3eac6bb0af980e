// The transport: a timer that moves the playhead at the chosen speed.
#include "refhost/edit/PlayClock.h"

#include <QElapsedTimer>
#include <QTimer>
#include <cmath>

#include "host/Edit.h"
#include "host/TransitStatus.h"
#include "host/Vob.h"

namespace {
constexpr int kNormalSpeed = 1024;
constexpr int kTickMs = 20;
} // namespace

struct PlayClock::Timer {
    QTimer timer;
    QElapsedTimer since;
};

PlayClock::PlayClock(Vob* vob) : vob_(vob), timer_(std::make_unique<Timer>()) {
    timer_->timer.setInterval(kTickMs);
    QObject::connect(&timer_->timer, &QTimer::timeout, [this] {
        const double seconds = static_cast<double>(timer_->since.restart()) / 1000.0;
        advance(seconds);
    });
}

PlayClock::~PlayClock() {
    if (playing_)
        stop();
}

void PlayClock::play(int speed) {
    if (speed == 0 || !vob_ || !vob_->edit()) {
        stop();
        return;
    }
    speed_ = speed;
    TransitStatus::manager().setSpeed(speed);
    if (playing_)
        return;
    playing_ = true;
    exact_ = vob_->getCurrentTime(1);
    vob_->setStateWord(vob_->stateWord() | Vob::kPlaying);
    timer_->since.start();
    timer_->timer.start();
}

void PlayClock::stop() {
    timer_->timer.stop();
    if (!playing_)
        return;
    playing_ = false;
    speed_ = 0;
    TransitStatus::manager().setSpeed(0);
    if (vob_) {
        vob_->setStateWord(vob_->stateWord() & ~static_cast<unsigned>(Vob::kPlaying));
        vob_->setCurrentTime(vob_->getCurrentTime(1));
    }
    if (listener_)
        listener_();
}

void PlayClock::advance(double seconds) {
    if (!playing_ || !vob_ || !vob_->edit())
        return;
    const Edit& edit = *vob_->edit();
    const double rate = edit.getVideoMetadata().frameRate > 0 ? edit.getVideoMetadata().frameRate : 25.0;
    exact_ += seconds * speed_ / kNormalSpeed;
    const double start = edit.getStartTime(), end = edit.getEndTime();
    bool atEnd = false;
    if (exact_ >= end) {
        exact_ = end;
        atEnd = true;
    } else if (exact_ <= start) {
        exact_ = start;
        atEnd = true;
    }
    // The playhead stands on frames; the end of the edit is where the last frame ends.
    double t = atEnd ? exact_ : start + std::floor((exact_ - start) * rate + 1e-6) / rate;
    if (!valEqualsVal(t, vob_->getCurrentTime(1)))
        vob_->setCurrentTime(t);
    if (atEnd) {
        stop();
        return;
    }
    if (listener_)
        listener_();
}
