// The string notifiers of the host, instantiated once here for every library that uses them.
#include "host/Notifier.h"

#include "host/NotifyWithDisable.h"

template class GenericNotifier<NotifyMsg>;

Notifier::~Notifier() = default;

NotifyWithDisable::~NotifyWithDisable() = default;
