// The manager and the multi-server client of double servers, instantiated once for the library.
#include "values/ValManagerBase.h"

#include "values/MultiValClient.h"

template class ValManagerBase<double>;
template class MultiValClient<double>;
