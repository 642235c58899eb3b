// What the readers of the area streams must find.
#pragma once
#include "bench.hpp"
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace bench;

static const size_t Size = 64 << 20;

struct Map
{
    const char *p;
    explicit Map( const std::string &f )
    {
        int fd = open( f.c_str(), O_RDONLY );
        p = (const char *)mmap( nullptr, Size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0 );
        CHECK( p != MAP_FAILED );
        close( fd );
    }
    ~Map()
    {
        munmap( (void *)p, Size );
    }
};

struct Want
{
    uint64_t bytes = 0, blocks = 0, lines = 0, chars = 0;
};

inline const Want &wanted( const std::string &bin, const std::string &txt )
{
    static const Want want = [&] {
        Want want;
        Map m( bin ), t( txt );
        for ( size_t i = 0; i < Size; ++i )
        {
            want.bytes += (unsigned char)m.p[i];
            if ( i % 1024 == 0 )
                want.blocks += (unsigned char)m.p[i];
            want.lines += t.p[i] == '\n';
        }
        want.chars = Size - want.lines;
        return want;
    }();
    return want;
}
