// Marks of base classes are text among the pieces, so that a missing or misplaced one is found.
#include "kxtypes/PackBuffer.h"

#include "kxtypes/Failure.h"

namespace KxTypes
{
    namespace
    {
        std::string BeginMark(const char* name)
        {
            return std::string("begin ") + name;
        }

        std::string EndMark(const char* name)
        {
            return std::string("end ") + name;
        }
    }

    PieceWriter::PieceWriter(PackedPieces& theTarget)
        : target(theTarget)
    {
    }

    void PieceWriter::BeginBaseClass(const char* name)
    {
        target.emplace_back(BeginMark(name));
    }

    void PieceWriter::EndBaseClass(const char* name)
    {
        target.emplace_back(EndMark(name));
    }

    void PieceWriter::WriteText(const char* bytes, std::uint32_t size)
    {
        target.emplace_back(std::string(bytes, size));
    }

    void PieceWriter::WriteUInt32(std::uint32_t number)
    {
        target.emplace_back(number);
    }

    PieceReader::PieceReader(const PackedPieces& theSource)
        : source(theSource)
    {
    }

    void PieceReader::BeginBaseClass(const char* name)
    {
        Expect(BeginMark(name));
    }

    void PieceReader::EndBaseClass(const char* name)
    {
        Expect(EndMark(name));
    }

    KX_TString PieceReader::ReadText()
    {
        const auto& text = Next<std::string>();
        return KX_TString(text.data(), static_cast<std::uint32_t>(text.size()));
    }

    std::uint32_t PieceReader::ReadUInt32()
    {
        return Next<std::uint32_t>();
    }

    template <class Piece>
    const Piece& PieceReader::Next()
    {
        const auto* const piece = position < source.size() ? std::get_if<Piece>(&source[position]) : nullptr;
        if (piece == nullptr)
        {
            ThrowFailure(
                "A packed object does not hold what its class asks for", __LINE__, "layers/kxtypes/PackBuffer.cpp");
        }
        ++position;
        return *piece;
    }

    void PieceReader::Expect(const std::string& mark)
    {
        if (Next<std::string>() != mark)
        {
            ThrowFailure(
                "A packed object has no \"" + mark + "\" where its class asks for it", __LINE__,
                "layers/kxtypes/PackBuffer.cpp");
        }
    }

    PackedPieces Packed(const KX_IPackable& object)
    {
        PackedPieces pieces;
        PieceWriter writer(pieces);
        object.KX_Pack(writer);
        return pieces;
    }
}
