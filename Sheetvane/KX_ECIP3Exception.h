// The failure that hosts of Sheetvane::SheetvaneConverter catch. It adds no field to its base: message, source line and
// file are read by the accessors of KX_EException.
#pragma once

#include <kxtypes.h>

#include <rasteroutput/Export.h>

/// A failure of the converter. Can be caught as itself, KX_EException, KX_TObject, KX_IInterface, KX_IThrowable,
/// KX_IPackable and KX_IPrintable; not as std::exception. The operations that copy may throw std::bad_alloc.
class SHEETVANE_EXPORT KX_ECIP3Exception : public KX_EException
{
public:
    KX_ECIP3Exception();                                   ///< without a message; what the class object's factory makes
    explicit KX_ECIP3Exception(const KX_TString& message); ///< `message` says what failed; it is copied
    KX_ECIP3Exception(const KX_ECIP3Exception&);
    KX_ECIP3Exception& operator=(const KX_ECIP3Exception&);
    ~KX_ECIP3Exception() override;

    void* KX_Self() override;

    /// The class object for null, the object itself for "KX_ECIP3Exception", else the answer of KX_EException. The first
    /// query of the process makes the class known to the object library.
    const void* KX_DynamicInfo(const char* typeName) const override;

    [[noreturn]] void KX_Throw() override;             ///< throws a copy as a KX_ECIP3Exception
    void KX_Pack(KX_IPacking& packing) const override; ///< the base's content, between marks with the base's name
    void KX_Unpack(KX_IUnpacking& unpacking) override; ///< throws what `unpacking` throws if the marks are not there
    KX_IPackable* KX_Clone() const override;           ///< a new heap copy, owned by the caller
};
