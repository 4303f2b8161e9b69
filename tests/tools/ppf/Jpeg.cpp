#include "tests/tools/ppf/Jpeg.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

namespace PpfTest
{
    std::string FlatJpeg(unsigned width, unsigned height, unsigned components, unsigned char value, bool progressive)
    {
        jpeg_compress_struct jpeg = {};
        jpeg_error_mgr errors = {};
        jpeg.err = jpeg_std_error(&errors);
        jpeg_create_compress(&jpeg);
        unsigned char* bytes = nullptr;
        unsigned long size = 0;
        jpeg_mem_dest(&jpeg, &bytes, &size);
        jpeg.image_width = width;
        jpeg.image_height = height;
        jpeg.input_components = static_cast<int>(components);
        jpeg.in_color_space = components == 1 ? JCS_GRAYSCALE : JCS_CMYK;
        jpeg_set_defaults(&jpeg);
        if (progressive)
        {
            jpeg_simple_progression(&jpeg);
        }
        jpeg_start_compress(&jpeg, TRUE);
        std::vector<unsigned char> row(width * components, value);
        for (unsigned y = 0; y < height; ++y)
        {
            JSAMPROW rows[] = {row.data()};
            jpeg_write_scanlines(&jpeg, rows, 1);
        }
        jpeg_finish_compress(&jpeg);
        jpeg_destroy_compress(&jpeg);
        std::string text(reinterpret_cast<const char*>(bytes), size);
        std::free(bytes);
        return text;
    }
}
