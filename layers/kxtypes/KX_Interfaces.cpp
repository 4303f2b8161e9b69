// The interfaces without operations of their own: their destructors put the virtual tables here.
#include <kxtypes.h>

KX_IThrowable::~KX_IThrowable() = default;
KX_IPrintable::~KX_IPrintable() = default;
KX_IIteratable::~KX_IIteratable() = default;
