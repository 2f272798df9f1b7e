#include <korx/KORXProperties.h>

namespace {

// Every empty name is the same name, whether or not its string holds a buffer.
bool sameName(const KORXString& a, const KORXString& b) {
    if (a.length() == 0 || b.length() == 0)
        return a.length() == b.length();
    return a.equals(b);
}

}  // namespace

KORXProperties::KORXProperties() = default;

KORXProperties::KORXProperties(const KORXProperties& other)
    : m_names(other.m_names.copy()), m_values(other.m_values.copy()) {}

KORXProperties& KORXProperties::operator=(const KORXProperties& other) {
    if (this != &other) {
        m_names = other.m_names.copy();
        m_values = other.m_values.copy();
    }
    return *this;
}

KORXProperties::~KORXProperties() = default;

KORIResult KORXProperties::Set(const KORXString& entry) {
    const int equals = entry.indexOf(KORXWChar('='));
    if (equals < 0)
        return KORIResult::E_FAIL_RESULT;
    return Set(entry.substring(0, equals), entry.substring(equals + 1));
}

KORIResult KORXProperties::Set(const KORXString& name, const KORXString& value) {
    const int index = IndexOf(name);
    if (index >= 0) {
        m_values[index] = value;
        return KORIResult(0);
    }
    m_names.add(name);
    m_values.add(value);
    return KORIResult(0);
}

KORIResult KORXProperties::Get(const KORXString& name, KORXString& value) const {
    const int index = IndexOf(name);
    if (index < 0)
        return KORIResult::E_FAIL_RESULT;
    value = m_values[index];
    return KORIResult(0);
}

KORIResult KORXProperties::Get(int index, KORXString& name, KORXString& value) const {
    if (index < 0 || index >= GetCount())
        return KORIResult::E_FAIL_RESULT;
    name = m_names[index];
    value = m_values[index];
    return KORIResult(0);
}

int KORXProperties::GetCount() const { return m_names.size(); }

int KORXProperties::IndexOf(const KORXString& name) const {
    for (int i = 0; i < m_names.size(); ++i) {
        if (sameName(m_names[i], name))
            return i;
    }
    return -1;
}
