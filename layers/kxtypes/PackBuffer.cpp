// Marks of base classes are text among the pieces, so that a missing or misplaced one is found.
#include "PackBuffer.h"

#include "Failure.h"

namespace kxtypes
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

    PieceWriter::PieceWriter(PackedPieces& target)
        : m_target(target)
    {
    }

    void PieceWriter::BeginBaseClass(const char* name)
    {
        m_target.emplace_back(BeginMark(name));
    }

    void PieceWriter::EndBaseClass(const char* name)
    {
        m_target.emplace_back(EndMark(name));
    }

    void PieceWriter::WriteText(const char* bytes, std::uint32_t size)
    {
        m_target.emplace_back(std::string(bytes, size));
    }

    void PieceWriter::WriteUInt32(std::uint32_t number)
    {
        m_target.emplace_back(number);
    }

    PieceReader::PieceReader(const PackedPieces& source)
        : m_source(source)
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
        const auto* const piece = m_position < m_source.size() ? std::get_if<Piece>(&m_source[m_position]) : nullptr;
        if (piece == nullptr)
            ThrowFailure(
                "A packed object does not hold what its class asks for", __LINE__, "layers/kxtypes/PackBuffer.cpp");
        ++m_position;
        return *piece;
    }

    void PieceReader::Expect(const std::string& mark)
    {
        if (Next<std::string>() != mark)
            ThrowFailure(
                "A packed object has no \"" + mark + "\" where its class asks for it", __LINE__,
                "layers/kxtypes/PackBuffer.cpp");
    }

    PackedPieces Packed(const KX_IPackable& object)
    {
        PackedPieces pieces;
        PieceWriter writer(pieces);
        object.KX_Pack(writer);
        return pieces;
    }
}
