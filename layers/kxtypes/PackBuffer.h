// A packed object in memory: the library's own sink and source, for moving and comparing packed content.
#pragma once

#include <kxtypes.h>

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace KxTypes
{
    /// The pieces of one packed object, in order; bases are marked by their names.
    using PackedPieces = std::vector<std::variant<std::string, std::uint32_t>>;

    class PieceWriter : public KX_IPacking
    {
    public:
        /// `target` has to outlive the writer.
        explicit PieceWriter(PackedPieces& theTarget);

        void BeginBaseClass(const char* name) override;
        void EndBaseClass(const char* name) override;
        void WriteText(const char* bytes, std::uint32_t size) override;
        void WriteUInt32(std::uint32_t number) override;

    private:
        PackedPieces& target;
    };

    /// Throws KX_EException if the next piece is not what is asked for.
    class PieceReader : public KX_IUnpacking
    {
    public:
        /// `source` has to outlive the reader.
        explicit PieceReader(const PackedPieces& theSource);

        void BeginBaseClass(const char* name) override;
        void EndBaseClass(const char* name) override;
        KX_TString ReadText() override;
        std::uint32_t ReadUInt32() override;

    private:
        template <class Piece>
        const Piece& Next();
        void Expect(const std::string& mark);

        const PackedPieces& source;
        std::size_t position = 0;
    };

    PackedPieces Packed(const KX_IPackable& object);
}
