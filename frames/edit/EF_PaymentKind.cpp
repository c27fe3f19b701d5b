#include "frames/edit/EF_PaymentKind.h"
#include "frames/core/Registry.h"

namespace frames {
FRAMES_REGISTER(TPaymentKind_EF, "edit");
}
