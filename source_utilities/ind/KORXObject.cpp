#include <korx/KORXEventBus.h>

#include "internal/OwnedText.h"

using korx::detail::CopyText;

KORXObject::KORXObject(const char* className) : m_className(CopyText(className)) {}

// Each copy owns its own name, so copies and sources may be destroyed in any order.
KORXObject::KORXObject(const KORXObject& other) : m_className(CopyText(other.m_className)) {}

KORXObject& KORXObject::operator=(const KORXObject& other) {
    if (this != &other) {
        char* copy = CopyText(other.m_className);
        delete[] m_className;
        m_className = copy;
    }
    return *this;
}

bool KORXObject::IsKindOf(const char* name) const {
    return korx::detail::SameText(m_className, name);
}

KORXObject::~KORXObject() { delete[] m_className; }
