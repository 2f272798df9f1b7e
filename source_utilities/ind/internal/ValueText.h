// ValueText.h
//
// How a formatter writes an option value: the printed text of the value. Internal: not
// installed.
#ifndef KORX_INTERNAL_VALUETEXT_H
#define KORX_INTERNAL_VALUETEXT_H

class KORXStreamFormatter;
class KORXValue;

namespace korx::detail {

void WriteValueText(KORXStreamFormatter& formatter, const KORXValue& value);

}  // namespace korx::detail

#endif
