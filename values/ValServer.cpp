// The value servers and clients of the three value types, instantiated once for the library.
#include "values/ValServer.h"

#include "values/ValClient.h"
#include "values/ValObserver.h"

template class ValServer<double>;
template class ValServer<XY<double>>;
template class ValServer<bool>;

template class ValClient<double>;
template class ValClient<XY<double>>;

template class ValObserver<double>;
template class ValObserver<XY<double>>;
