#include <korx/KORXStreamFormatter.h>

// The bytes of the page's markup are fixed: readers of earlier pages compare them as they are.

void Gk_HTMLEndline::dump(KORXStreamFormatter& formatter) const { formatter << "<br>\r\n"; }

void Gk_HTMLSpace::dump(KORXStreamFormatter& formatter) const { formatter << "&nbsp;"; }

Gk_HTMLMargin::Gk_HTMLMargin(KORXStreamFormatter* formatter)
    : KORXStreamFormatterMargin(formatter) {}

void Gk_HTMLMargin::dump(KORXStreamFormatter& formatter) const {
    for (int i = 0; i < m_level; ++i)
        formatter << "&nbsp;&nbsp;&nbsp;&nbsp;";
}

Gk_HTMLAnchor::Gk_HTMLAnchor(const KORXStreamFormatterObjectHandle& name) : m_name(name) {}

void Gk_HTMLAnchor::dump(KORXStreamFormatter& formatter) const {
    formatter << "<a name= \"" << m_name << "\">" << m_name << "</a>";
}

Gk_HTMLTag::Gk_HTMLTag(const KORXStreamFormatterObjectHandle& name) : m_name(name) {}

void Gk_HTMLTag::dump(KORXStreamFormatter& formatter) const {
    formatter << "<a href=\"#" << m_name << "\">" << m_name << "</a>";
}

KORXHTMLStreamFormatter::KORXHTMLStreamFormatter(KORXOutputStream* out, const char* title,
                                                 const char* background)
    : KORXStreamFormatter(out) {
    replaceObjects(ObjectHandle(new Gk_HTMLSpace()), ObjectHandle(new Gk_HTMLEndline()),
                   MarginHandle(new Gk_HTMLMargin(this)));
    *this << "<HTML> <title>" << title << "</title>" << "<BODY BGCOLOR=\"" << background
          << "\"" << " > ";
}

KORXHTMLStreamFormatter::~KORXHTMLStreamFormatter() { *this << "</BODY> </HTML>"; }

KORXStreamFormatter::ObjectHandle KORXHTMLStreamFormatter::define(long value) {
    return ObjectHandle(new Gk_HTMLAnchor(KORXStreamFormatter::define(value)));
}

KORXStreamFormatter::ObjectHandle KORXHTMLStreamFormatter::define(const void* pointer) {
    return ObjectHandle(new Gk_HTMLAnchor(KORXStreamFormatter::define(pointer)));
}

KORXStreamFormatter::ObjectHandle KORXHTMLStreamFormatter::refer(long value) {
    return ObjectHandle(new Gk_HTMLTag(KORXStreamFormatter::refer(value)));
}

KORXStreamFormatter::ObjectHandle KORXHTMLStreamFormatter::refer(const void* pointer) {
    return ObjectHandle(new Gk_HTMLTag(KORXStreamFormatter::refer(pointer)));
}
