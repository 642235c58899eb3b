// The texts of paths: validity, encoding, decoding, and the form for display.

#include <qv/io/qv_path.hh>

#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

namespace
{

enum class Form
{
    unixText,
    windowsText
};

// ---- Validity ----

bool isWindowsReserved( QV_CHAR ch )
{
    switch ( ch )
    {
    case 0:
    case '"':
    case '*':
    case '/':
    case ':':
    case '<':
    case '>':
    case '?':
    case '\\':
    case '|':
        return true;
    default:
        return false;
    }
}

bool isReserved( QV_CHAR ch, Form form )
{
    return form == Form::unixText ? ch == 0 || ch == '/' : isWindowsReserved( ch );
}

// The empty name, "." and "..".
bool isEmptyOrDots( const QV_CHAR *chs, QV_INT length )
{
    return length <= 2 && ( length < 1 || chs[0] == '.' ) && ( length < 2 || chs[1] == '.' );
}

bool componentOk( const QV_CHAR *chs, QV_INT length, Form form )
{
    if ( isEmptyOrDots( chs, length ) )
        return false;
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        if ( isReserved( chs[idx], form ) )
            return false;
    }
    return true;
}

bool componentOk( QV_STRING *component, Form form )
{
    return componentOk( qv::stringBacking( component ), qv::stringLength( component ), form );
}

QV_STRING *componentAt( QV_PATH *path, QV_INT idx )
{
    return static_cast<QV_STRING *>( qv::vectorAt( path->components, idx ) );
}

bool componentsOk( QV_PATH *path, Form form )
{
    for ( QV_INT idx = 0; idx < qv::vectorLength( path->components ); idx++ )
    {
        if ( !componentOk( componentAt( path, idx ), form ) )
            return false;
    }
    return true;
}

// ---- Encoding ----

// The volume letter or the server.
void appendWindowsPrefix( QV_STRING **text, QV_PATH *path )
{
    if ( path->flags & QV_PATH_FLAG_WINDOWS_VOLUME )
    {
        if ( path->windowsVolumeDesignator )
            qv::stringAppendChar( text, path->windowsVolumeDesignator );
        qv::stringAppendChar( text, ':' );
    }
    else if ( path->flags & QV_PATH_FLAG_WINDOWS_UNC )
    {
        qv::stringAppendLiteral( text, "\\\\" );
        if ( path->windowsUncServer )
            qvStringAppend( text, path->windowsUncServer );
    }
}

// Joins ".", "..", and components, each but the first behind a separator, and the first too if the path begins at a root.
class Joiner
{
  public:
    Joiner( QV_STRING **text, QV_CHAR separator, bool leading )
        : text_( text ), separator_( separator ), separate_( leading )
    {
    }

    void join( const QV_CHAR *chs, QV_INT length )
    {
        if ( separate_ )
            qv::stringAppendChar( text_, separator_ );
        qv::stringAppendChars( text_, chs, length );
        separate_ = true;
        joined_ = true;
    }

    bool joined() const
    {
        return joined_;
    }

  private:
    QV_STRING **text_;
    QV_CHAR separator_;
    bool separate_;
    bool joined_ = false;
};

// Appends the whole path, valid or not.
void appendPath( QV_STRING **text, QV_PATH *path, QV_CHAR separator )
{
    constexpr QV_CHAR dots[] = { '.', '.' };
    bool isRoot = path->flags & QV_PATH_FLAG_FSROOT;
    bool isUnc = path->flags & QV_PATH_FLAG_WINDOWS_UNC;
    appendWindowsPrefix( text, path );

    Joiner joiner( text, separator, isRoot || isUnc );
    if ( path->flags & QV_PATH_FLAG_CWD )
        joiner.join( dots, 1 );
    for ( QV_INT count = path->up; count > 0; count-- )
    {
        joiner.join( dots, 2 );
    }
    for ( QV_INT idx = 0; idx < qv::vectorLength( path->components ); idx++ )
    {
        QV_STRING *component = componentAt( path, idx );
        joiner.join( qv::stringBacking( component ), qv::stringLength( component ) );
    }

    if ( isRoot && !joiner.joined() )
        qv::stringAppendChar( text, separator );
    else if ( path->flags & QV_PATH_FLAG_DIRECTORY )
    {
        // Without the dot, a directory flag alone would read as the root.
        if ( !joiner.joined() && !isUnc )
            qv::stringAppendChar( text, '.' );
        qv::stringAppendChar( text, separator );
    }
}

QV_STRING *encode( QV_PATH *path, QV_CHAR separator )
{
    qv::Local<QV_STRING> text( qvStringCreate() );
    appendPath( text.edit(), path, separator );
    return text.give();
}

// ---- Decoding ----

// A part of a text between two separators.
struct Part
{
    const QV_CHAR *chs;
    QV_INT length;
    bool isFirst;
    bool isLast;

    bool isDots( QV_INT count ) const
    {
        return length == count && isEmptyOrDots( chs, length );
    }
};

// Reads a text from left to right into the fields of a path.
class Decoder
{
  public:
    Decoder( QV_STRING *text, Form form )
        : form_( form ), chs_( qv::stringBacking( text ) ), end_( chs_ + qv::stringLength( text ) )
    {
    }

    // A new path, or null if the text is none.
    QV_PATH *decode()
    {
        takeUncMark();
        Part part = { nullptr, 0, true, false };
        for ( ; !part.isLast; part.isFirst = false )
        {
            takePart( &part );
            if ( !decodePart( part ) )
                return nullptr;
        }
        QV_PATH *path = qv::pathCreateFresh( flags_, up_, components_.give() );
        path->windowsVolumeDesignator = designator_;
        path->windowsUncServer = server_.give();
        return path;
    }

  private:
    bool isSeparator( QV_CHAR ch ) const
    {
        return ch == '/' || ( ch == '\\' && form_ == Form::windowsText );
    }

    void takeUncMark()
    {
        bool marked =
            form_ == Form::windowsText && end_ - chs_ >= 2 && isSeparator( chs_[0] ) && chs_[1] == chs_[0];
        if ( marked )
        {
            flags_ |= QV_PATH_FLAG_WINDOWS_UNC;
            chs_ += 2;
        }
    }

    void takePart( Part *part )
    {
        part->chs = chs_;
        while ( chs_ < end_ && !isSeparator( *chs_ ) )
        {
            chs_++;
        }
        part->length = chs_ - part->chs;
        part->isLast = chs_ == end_;
        if ( !part->isLast )
            chs_++;
    }

    bool decodePart( Part part )
    {
        if ( part.isFirst && ( flags_ & QV_PATH_FLAG_WINDOWS_UNC ) )
            return decodeServer( part );
        if ( part.isFirst && form_ == Form::windowsText && !decodeVolume( &part ) )
            return false;
        if ( part.length == 0 )
            decodeEmpty( part );
        else if ( part.isDots( 1 ) )
            decodeDot( part );
        else if ( part.isDots( 2 ) )
            decodeDotDot( part );
        else
            return decodeName( part );
        return true;
    }

    bool decodeServer( const Part &part )
    {
        if ( !componentOk( part.chs, part.length, form_ ) )
            return false;
        server_.take( qvStringCreateFromCharsCopy( part.chs, part.length ) );
        return true;
    }

    // Takes a volume letter and its colon off the part, if they stand there.
    bool decodeVolume( Part *part )
    {
        if ( part->length < 2 || part->chs[1] != ':' )
            return true;
        if ( !qvPathWindowsVolumeDesignatorOk( part->chs[0] ) )
            return false;
        flags_ |= QV_PATH_FLAG_WINDOWS_VOLUME;
        designator_ = part->chs[0];
        part->chs += 2;
        part->length -= 2;
        return true;
    }

    void decodeEmpty( const Part &part )
    {
        if ( part.isFirst && part.isLast )
            return;
        if ( part.isFirst )
            flags_ |= QV_PATH_FLAG_FSROOT;
        if ( part.isLast )
            flags_ |= QV_PATH_FLAG_DIRECTORY;
    }

    void decodeDot( const Part &part )
    {
        if ( part.isFirst )
            flags_ |= QV_PATH_FLAG_CWD;
        if ( part.isLast )
            flags_ |= QV_PATH_FLAG_DIRECTORY;
    }

    void decodeDotDot( const Part &part )
    {
        if ( qv::vectorLength( components_ ) > 0 )
            qvVectorDelTrailing( components_.edit(), 1 );
        else if ( up_ < QV_INT_MAX )
            up_++;
        if ( part.isLast )
            flags_ |= QV_PATH_FLAG_DIRECTORY;
    }

    bool decodeName( const Part &part )
    {
        if ( !componentOk( part.chs, part.length, form_ ) )
            return false;
        qv::vectorAppendGiven( components_.edit(),
                               qv::objOf( qvStringCreateFromCharsCopy( part.chs, part.length ) ) );
        return true;
    }

    Form form_;
    const QV_CHAR *chs_;
    const QV_CHAR *end_;
    QV_PATH_FLAGS flags_ = 0;
    QV_INT up_ = 0;
    qv::Local<QV_VECTOR> components_{ qvVectorCreate() };
    QV_CHAR designator_ = 0;
    qv::Local<QV_STRING> server_;
};

} // namespace

QV_STRING *qv___PathToStringFunc( qvObj thisObj )
{
    auto *path = static_cast<QV_PATH *>( thisObj );
    bool isWindows = path->flags & ( QV_PATH_FLAG_WINDOWS_VOLUME | QV_PATH_FLAG_WINDOWS_UNC );
    qv::Local<QV_STRING> text( qvStringCreate() );
    qv::stringAppendChar( text.edit(), '[' );
    appendPath( text.edit(), path, isWindows ? '\\' : '/' );
    qv::stringAppendChar( text.edit(), ']' );
    return text.give();
}

QV_BOOL qvPathUnixIsValid( QV_PATH *path )
{
    QV_CHECK( path );
    if ( path->flags & ( QV_PATH_FLAG_WINDOWS_VOLUME | QV_PATH_FLAG_WINDOWS_UNC ) )
        return QV_FALSE;
    if ( ( path->flags & QV_PATH_FLAG_FSROOT ) && path->up > 0 )
        return QV_FALSE;
    return componentsOk( path, Form::unixText );
}

QV_BOOL qvPathWindowsIsValid( QV_PATH *path )
{
    QV_CHECK( path );
    if ( ( path->flags & QV_PATH_FLAG_WINDOWS_VOLUME ) && path->windowsVolumeDesignator == 0 )
        return QV_FALSE;
    if ( path->flags & QV_PATH_FLAG_WINDOWS_UNC )
    {
        if ( !path->windowsUncServer || !componentOk( path->windowsUncServer, Form::windowsText ) )
            return QV_FALSE;
    }
    if ( ( path->flags & ( QV_PATH_FLAG_FSROOT | QV_PATH_FLAG_WINDOWS_UNC ) ) && path->up > 0 )
        return QV_FALSE;
    return componentsOk( path, Form::windowsText );
}

QV_BOOL qvPathIsValid( QV_PATH *path )
{
    return qvPathUnixIsValid( path ) || qvPathWindowsIsValid( path );
}

QV_BOOL qvPathPlatformIsValid( QV_PATH *path )
{
    return qvPathUnixIsValid( path );
}

QV_STRING *qvPathUnixTryEncode( QV_PATH *path )
{
    return qvPathUnixIsValid( path ) ? encode( path, '/' ) : nullptr;
}

QV_STRING *qvPathWindowsTryEncode( QV_PATH *path )
{
    return qvPathWindowsIsValid( path ) ? encode( path, '\\' ) : nullptr;
}

QV_STRING *qvPathTryEncode( QV_PATH *path )
{
    QV_STRING *text = qvPathUnixTryEncode( path );
    return text ? text : qvPathWindowsTryEncode( path );
}

QV_STRING *qvPathPlatformTryEncode( QV_PATH *path )
{
    return qvPathUnixTryEncode( path );
}

QV_PATH *qvPathUnixTryDecode( QV_STRING *text )
{
    QV_CHECK( text );
    qv::Local<QV_PATH> path( Decoder( text, Form::unixText ).decode() );
    return path && qvPathUnixIsValid( path ) ? path.give() : nullptr;
}

QV_PATH *qvPathWindowsTryDecode( QV_STRING *text )
{
    QV_CHECK( text );
    qv::Local<QV_PATH> path( Decoder( text, Form::windowsText ).decode() );
    return path && qvPathWindowsIsValid( path ) ? path.give() : nullptr;
}

QV_PATH *qvPathTryDecode( QV_STRING *text )
{
    QV_PATH *path = qvPathWindowsTryDecode( text );
    return path ? path : qvPathUnixTryDecode( text );
}

QV_PATH *qvPathPlatformTryDecode( QV_STRING *text )
{
    return qvPathUnixTryDecode( text );
}

QV_PATH *qvPathTryDecodeCstr( const char *text, QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromCstr( text, length ) );
    return qvPathTryDecode( made );
}

QV_PATH *qvPathTryDecodeWcstr( const wchar_t *text, QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromWcstr( text, length ) );
    return qvPathTryDecode( made );
}
