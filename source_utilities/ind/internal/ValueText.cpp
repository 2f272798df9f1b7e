#include "internal/ValueText.h"

namespace korx::detail {

// Option values have no printed form yet: nothing is written until they do.
void WriteValueText(KORXStreamFormatter& /*formatter*/, const KORXValue& /*value*/) {}

}  // namespace korx::detail
