#include <korx/KORIResult.h>

namespace {

constexpr uint32_t kSuccess = 0x0000000;
constexpr uint32_t kPartialSuccess = 0x0000001;
constexpr uint32_t kNoEntityToTranslate = 0x0000002;
constexpr uint32_t kFailure = 0x1000001;
constexpr uint32_t kUndetermined = 0x3000006;

struct Message {
    uint32_t code;
    const char* text;
};

constexpr Message kMessages[] = {
    {kSuccess, "Success"},
    {kPartialSuccess, "Partial Success"},
    {kNoEntityToTranslate, "No Entity to Translate"},
    {kFailure, "Failure"},
    {0x1000002, "Error Encountered"},
    {0x1000007, "Unexpected Error"},
    {0x1000009, "Invalid Component"},
    {0x100000A, "Invalid Object"},
    {0x100000B, "Invalid Argument"},
    {0x100000D, "File Not Found"},
    {0x100000E, "File Open Error"},
    {0x100000F, "File Save Error"},
    {0x1000010, "File is encrypted"},
    {0x1000011, "Model size exceeds valid box"},
    {0x1000012, "Model size is smaller than the valid box"},
    {0x1000013, "File write unit is invalid"},
    {0x1000014, "File version is not supported"},
    {0x1000015, "Invalid file"},
    {0x2000003, "Aborted"},
    {kUndetermined, "Undetermined"},
};

// The four kinds the combination tables distinguish.
enum Kind { kCompleteSuccess, kPartial, kUndeterminedKind, kDeterminedFailure, kKinds };

// What a combination does with the left result a and the right result b.
enum Action {
    kKeep,              // a stays
    kTake,              // b replaces a
    kStorePartial,      // a becomes "Partial Success"
    kTakeNoEntityOnly,  // a stays, unless b is "No Entity to Translate"
};

// Rows: the kind of a; columns: the kind of b.
constexpr Action kAndTable[kKinds][kKinds] = {
    {kTakeNoEntityOnly, kTake, kTake, kTake},
    {kKeep, kKeep, kTake, kTake},
    {kKeep, kKeep, kKeep, kTake},
    {kKeep, kKeep, kKeep, kKeep},
};

// An undetermined a stays undetermined beside a partial b; callers rely on this cell as it is.
constexpr Action kOrTable[kKinds][kKinds] = {
    {kKeep, kStorePartial, kStorePartial, kStorePartial},
    {kKeep, kKeep, kKeep, kKeep},
    {kStorePartial, kKeep, kKeep, kTake},
    {kStorePartial, kStorePartial, kKeep, kKeep},
};

int criticityOf(uint32_t code) { return static_cast<int>((code >> 24) & 0xF); }

Kind kindOf(uint32_t code) {
    if (code == kPartialSuccess)
        return kPartial;
    if (criticityOf(code) == 0)
        return kCompleteSuccess;
    if (code == kUndetermined)
        return kUndeterminedKind;
    return kDeterminedFailure;
}

uint32_t combine(const Action (&table)[kKinds][kKinds], uint32_t a, uint32_t b) {
    switch (table[kindOf(a)][kindOf(b)]) {
    case kKeep:
        return a;
    case kTake:
        return b;
    case kStorePartial:
        return kPartialSuccess;
    case kTakeNoEntityOnly:
        return b == kNoEntityToTranslate ? b : a;
    }
    return a;
}

}  // namespace

const KORIResult KORIResult::E_FAIL_RESULT(kFailure);

KORIResult& KORIResult::operator=(long code) {
    m_code = static_cast<uint32_t>(code);
    return *this;
}

bool KORIResult::operator==(long code) const { return m_code == static_cast<uint32_t>(code); }

bool KORIResult::operator!=(long code) const { return !(*this == code); }

KORIResult::operator long() const { return static_cast<long>(m_code); }

int KORIResult::GetNumber() const { return static_cast<int>(m_code & 0xFFFF); }

int KORIResult::GetDomain() const { return static_cast<int>((m_code >> 16) & 0xFF); }

int KORIResult::GetCriticity() const { return criticityOf(m_code); }

const char* KORIResult::GetMessage() const {
    for (const Message& message : kMessages) {
        if (message.code == m_code)
            return message.text;
    }
    return "Unknown Result";
}

bool KORIResult::IsSuccess() const { return GetCriticity() == 0; }

bool KORIResult::IsCompleteSuccess() const { return IsSuccess() && m_code != kPartialSuccess; }

bool KORIResult::IsPartialSuccess() const { return m_code == kPartialSuccess; }

bool KORIResult::IsFailure() const { return GetCriticity() != 0; }

bool KORIResult::IsDeterminedFailure() const { return IsFailure() && m_code != kUndetermined; }

bool KORIResult::IsUndetermined() const { return m_code == kUndetermined; }

int KORIResult::GetReturnCode() const {
    if (IsSuccess())
        return 0;
    return GetDomain() != 0 ? 1 : GetNumber();
}

int KORIResult::GetReturnCode(bool success) { return success ? 1 : 0; }

const char* KORIResult::GetOKKOString(bool success) { return success ? "OK" : "KO"; }

KORIResult& KORIResult::operator&=(KORIResult other) {
    m_code = combine(kAndTable, m_code, other.m_code);
    return *this;
}

KORIResult& KORIResult::operator|=(KORIResult other) {
    m_code = combine(kOrTable, m_code, other.m_code);
    return *this;
}
