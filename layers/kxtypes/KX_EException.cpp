// The root of the exceptions: what was thrown, where, and how it goes on as its own class.
#include "ClassRecord.h"
#include "PackBuffer.h"

#include <kxtypes.h>

#include <ostream>

KX_EException::KX_EException()
    : m_line(0)
{
}
KX_EException::KX_EException(const KX_TString& message)
    : m_message(message)
    , m_line(0)
{
}
KX_EException::KX_EException(const KX_EException&) = default;
KX_EException& KX_EException::operator=(const KX_EException&) = default;
KX_EException::~KX_EException() = default;

std::uint32_t KX_EException::KX_ExceptionLine() const
{
    return m_line;
}

const char* KX_EException::KX_ExceptionFile() const
{
    return m_file.c_str();
}

const KX_TList& KX_EException::KX_StackTrace() const
{
    return m_stackTrace;
}

const KX_TString& KX_EException::KX_Message() const
{
    return m_message;
}

KX_TString& KX_EException::KX_Message()
{
    return m_message;
}

const KX_TAny& KX_EException::KX_Data() const
{
    return m_data;
}

KX_TAny& KX_EException::KX_Data()
{
    return m_data;
}

KX_EException& KX_EException::__PREPARE_FOR_THROW__(std::uint32_t line, const char* file)
{
    m_line = line;
    m_file = file != nullptr ? file : "";
    return *this;
}

const char* KX_EException::KX_ClassName()
{
    return "KX_EException";
}

const KX_TClass* KX_EException::KX_ClassObject()
{
    return kxtypes::ClassObjectOf<KX_EException>(KX_TObject::KX_ClassObject());
}

void* KX_EException::KX_Self()
{
    return this;
}

const void* KX_EException::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = kxtypes::OwnDynamicInfo<KX_EException>(typeName, this))
        return own;
    if (kxtypes::SameName(typeName, "KX_IThrowable"))
        return static_cast<const KX_IThrowable*>(this);
    if (kxtypes::SameName(typeName, "KX_IPackable"))
        return static_cast<const KX_IPackable*>(this);
    if (kxtypes::SameName(typeName, "KX_IPrintable"))
        return static_cast<const KX_IPrintable*>(this);
    return KX_TObject::KX_DynamicInfo(typeName);
}

void KX_EException::KX_Throw()
{
    throw KX_EException(*this);
}

void KX_EException::KX_Pack(KX_IPacking& packing) const
{
    m_message.KX_Pack(packing);
    packing.WriteText(m_file.data(), static_cast<std::uint32_t>(m_file.size()));
    packing.WriteUInt32(m_line);
}

void KX_EException::KX_Unpack(KX_IUnpacking& unpacking)
{
    const KX_TString message = unpacking.ReadText();
    const KX_TString file = unpacking.ReadText();
    const std::uint32_t line = unpacking.ReadUInt32();
    m_message = message;
    __PREPARE_FOR_THROW__(line, file.c_str());
}

KX_IPackable* KX_EException::KX_Clone() const
{
    return new KX_EException(*this);
}

bool KX_EException::KX_IsIdent(const KX_IPackable& other) const
{
    return kxtypes::SameName(ClassName(), other.ClassName()) && kxtypes::Packed(*this) == kxtypes::Packed(other);
}

void KX_EException::PrintOn(std::ostream& stream) const
{
    std::string text = std::string(ClassName()) + ": " + m_message.c_str();
    if (!m_file.empty())
        text += " (" + m_file + ":" + std::to_string(m_line) + ")"; // std::to_string: no grouping of digits
    stream << text;
}
