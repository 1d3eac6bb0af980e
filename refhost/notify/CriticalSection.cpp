// The reference host's critical section: a recursive mutex.
#include "host/CriticalSection.h"

CriticalSection::CriticalSection() = default;
CriticalSection::~CriticalSection() = default;

void CriticalSection::enter() {
    mutex_.lock();
}
void CriticalSection::leave() {
    mutex_.unlock();
}
