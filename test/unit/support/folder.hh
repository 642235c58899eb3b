#ifndef QV_TEST_SUPPORT_FOLDER_HH
#define QV_TEST_SUPPORT_FOLDER_HH

// Paths and files for tests: paths from texts, and a temporary folder that vanishes with all that is in it.

#include "support/test.hh"

#include <filesystem>
#include <fstream>

namespace test
{

// The path of a Unix text, null if it is none.
inline qv::Local<QV_PATH> pathOf( std::string_view unixText )
{
    return qv::Local<QV_PATH>( qvPathUnixTryDecode( text( unixText ) ) );
}

// The Unix text of a path, or "none".
inline std::string textOf( QV_PATH *path )
{
    qv::Local<QV_STRING> encoded( qvPathUnixTryEncode( path ) );
    return encoded ? toUtf8( encoded ) : "none";
}

class TemporaryFolder
{
  public:
    TemporaryFolder()
    {
        name_ = std::filesystem::temp_directory_path() / "qv_test_XXXXXX";
        if ( !mkdtemp( name_.data() ) )
            ADD_FAILURE() << "no temporary folder " << name_;
    }
    TemporaryFolder( const TemporaryFolder & ) = delete;
    TemporaryFolder &operator=( const TemporaryFolder & ) = delete;

    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all( name_, ignored );
    }

    // The text of something in the folder, "" for the folder itself.
    std::string name( std::string_view relative = "" ) const
    {
        return name_ + "/" + std::string( relative );
    }

    qv::Local<QV_PATH> path( std::string_view relative = "" ) const
    {
        return pathOf( name( relative ) );
    }

    void write( std::string_view relative, std::string_view bytes ) const
    {
        std::ofstream file( name( relative ), std::ios::binary );
        file << bytes;
    }

    std::string read( std::string_view relative ) const
    {
        std::ifstream file( name( relative ), std::ios::binary );
        return { std::istreambuf_iterator<char>( file ), std::istreambuf_iterator<char>() };
    }

    void makeFolder( std::string_view relative ) const
    {
        std::filesystem::create_directories( name( relative ) );
    }

    bool has( std::string_view relative ) const
    {
        return std::filesystem::exists( std::filesystem::symlink_status( name( relative ) ) );
    }

  private:
    std::string name_;
};

} // namespace test

#endif
