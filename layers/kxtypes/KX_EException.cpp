// The root of the exceptions: what was thrown, where, and how it goes on as its own class.
#include "kxtypes/ClassRecord.h"
#include "kxtypes/PackBuffer.h"

#include <kxtypes.h>

#include <ostream>

KX_EException::KX_EException()
    : line(0)
{
}
KX_EException::KX_EException(const KX_TString& theMessage)
    : message(theMessage)
    , line(0)
{
}
KX_EException::KX_EException(const KX_EException&) = default;
KX_EException& KX_EException::operator=(const KX_EException&) = default;
KX_EException::~KX_EException() = default;

std::uint32_t KX_EException::KX_ExceptionLine() const
{
    return line;
}

const char* KX_EException::KX_ExceptionFile() const
{
    return file.c_str();
}

const KX_TList& KX_EException::KX_StackTrace() const
{
    return stackTrace;
}

const KX_TString& KX_EException::KX_Message() const
{
    return message;
}

KX_TString& KX_EException::KX_Message()
{
    return message;
}

const KX_TAny& KX_EException::KX_Data() const
{
    return data;
}

KX_TAny& KX_EException::KX_Data()
{
    return data;
}

KX_EException& KX_EException::__PREPARE_FOR_THROW__(std::uint32_t theLine, const char* theFile)
{
    line = theLine;
    file = theFile != nullptr ? theFile : "";
    return *this;
}

const char* KX_EException::KX_ClassName()
{
    return "KX_EException";
}

const KX_TClass* KX_EException::KX_ClassObject()
{
    return KxTypes::ClassObjectOf<KX_EException>(KX_TObject::KX_ClassObject());
}

void* KX_EException::KX_Self()
{
    return this;
}

const void* KX_EException::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = KxTypes::OwnDynamicInfo<KX_EException>(typeName, this))
    {
        return own;
    }
    if (KxTypes::SameName(typeName, "KX_IThrowable"))
    {
        return static_cast<const KX_IThrowable*>(this);
    }
    if (KxTypes::SameName(typeName, "KX_IPackable"))
    {
        return static_cast<const KX_IPackable*>(this);
    }
    if (KxTypes::SameName(typeName, "KX_IPrintable"))
    {
        return static_cast<const KX_IPrintable*>(this);
    }
    return KX_TObject::KX_DynamicInfo(typeName);
}

void KX_EException::KX_Throw()
{
    throw KX_EException(*this);
}

void KX_EException::KX_Pack(KX_IPacking& packing) const
{
    message.KX_Pack(packing);
    packing.WriteText(file.data(), static_cast<std::uint32_t>(file.size()));
    packing.WriteUInt32(line);
}

void KX_EException::KX_Unpack(KX_IUnpacking& unpacking)
{
    const KX_TString packedMessage = unpacking.ReadText();
    const KX_TString packedFile = unpacking.ReadText();
    const std::uint32_t packedLine = unpacking.ReadUInt32();
    message = packedMessage;
    __PREPARE_FOR_THROW__(packedLine, packedFile.c_str());
}

KX_IPackable* KX_EException::KX_Clone() const
{
    return new KX_EException(*this);
}

bool KX_EException::KX_IsIdent(const KX_IPackable& other) const
{
    return KxTypes::SameName(ClassName(), other.ClassName()) && KxTypes::Packed(*this) == KxTypes::Packed(other);
}

void KX_EException::PrintOn(std::ostream& stream) const
{
    std::string text = std::string(ClassName()) + ": " + message.c_str();
    if (!file.empty())
    {
        text += " (" + file + ":" + std::to_string(line) + ")"; // std::to_string: no grouping of digits
    }
    stream << text;
}
