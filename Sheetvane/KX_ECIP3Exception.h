// The failure that hosts of Sheetvane::SheetvaneConverter catch. It adds no field to its base: message, source line and
// file are read by the accessors of KX_EException.
#pragma once

#include <kxtypes.h>

#include <rasteroutput/Export.h>

/// A failure of the converter. Can be caught as itself, KX_EException, KX_TObject, KX_IInterface, KX_IThrowable,
/// KX_IPackable and KX_IPrintable; not as std::exception.
class SHEETVANE_EXPORT KX_ECIP3Exception : public KX_EException
{
public:
    KX_ECIP3Exception();
    explicit KX_ECIP3Exception(const KX_TString& message);
    KX_ECIP3Exception(const KX_ECIP3Exception&);
    KX_ECIP3Exception& operator=(const KX_ECIP3Exception&);
    ~KX_ECIP3Exception() override;

    void* KX_Self() override;
    const void* KX_DynamicInfo(const char* typeName) const override;
    [[noreturn]] void KX_Throw() override;
    void KX_Pack(KX_IPacking& packing) const override;
    void KX_Unpack(KX_IUnpacking& unpacking) override;
    KX_IPackable* KX_Clone() const override;
};
