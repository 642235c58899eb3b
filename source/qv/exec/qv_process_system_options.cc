#include <qv/exec/qv_process_system_options.hh>

#include <qv/base/qv_store.h>
#include <qv/exec/qv_process_domain_options.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

using DomainOptions = QV_PROCESS_DOMAIN_OPTIONS *;

struct Member
{
    const char *key;
    DomainOptions qv___ProcessSystemOptions::*field;
};

constexpr Member members[] = {
    { "toolDomainOptions", &qv___ProcessSystemOptions::toolDomainOptions },
    { "serverLowPriorityDomainOptions", &qv___ProcessSystemOptions::serverLowPriorityDomainOptions },
    { "serverHighPriorityDomainOptions", &qv___ProcessSystemOptions::serverHighPriorityDomainOptions },
};

void qv___ProcessSystemOptionsFreeFunc( qvObj thisObj )
{
    QV_PROCESS_SYSTEM_OPTIONS *thisOptions = qvProcessSystemOptionsFrom( thisObj );
    QV_CHECK( thisOptions );
    for ( const Member &member : members )
    {
        qv::release( thisOptions->*member.field );
    }
}

QV_PROCESS_DOMAIN_OPTIONS *read( QV_PROCESS_SYSTEM_OPTIONS *options, const Member &member )
{
    QV_CHECK( options );
    return qv::retained( options->*member.field );
}

void set( QV_PROCESS_SYSTEM_OPTIONS **options, const Member &member,
          QV_PROCESS_DOMAIN_OPTIONS *domainOptions )
{
    QV_CHECK( domainOptions );
    qv::makePrivate( options, qvProcessSystemOptionsCreateFrom );
    qv::assign( &( ( *options )->*member.field ), domainOptions );
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS_SYSTEM_OPTIONS, qvProcessSystemOptions,
                { .freeFunc = qv___ProcessSystemOptionsFreeFunc } )

QV_PROCESS_SYSTEM_OPTIONS *qvProcessSystemOptionsCreate( void )
{
    auto *options = qv::create<QV_PROCESS_SYSTEM_OPTIONS>( qvProcessSystemOptionsSort() );
    for ( const Member &member : members )
    {
        options->*member.field = qvProcessDomainOptionsCreate();
    }
    return options;
}

QV_PROCESS_SYSTEM_OPTIONS *qvProcessSystemOptionsCreateFrom( QV_PROCESS_SYSTEM_OPTIONS *source )
{
    QV_CHECK( source );
    auto *options = qv::create<QV_PROCESS_SYSTEM_OPTIONS>( qvProcessSystemOptionsSort() );
    for ( const Member &member : members )
    {
        options->*member.field = qv::retained( source->*member.field );
    }
    return options;
}

QV_PROCESS_DOMAIN_OPTIONS *qvProcessSystemOptionsToolDomainOptions( QV_PROCESS_SYSTEM_OPTIONS *options )
{
    return read( options, members[0] );
}

void qvProcessSystemOptionsToolSetDomainOptions( QV_PROCESS_SYSTEM_OPTIONS **options,
                                                 QV_PROCESS_DOMAIN_OPTIONS *domainOptions )
{
    set( options, members[0], domainOptions );
}

QV_PROCESS_DOMAIN_OPTIONS *
qvProcessSystemOptionsServerLowPriorityDomainOptions( QV_PROCESS_SYSTEM_OPTIONS *options )
{
    return read( options, members[1] );
}

void qvProcessSystemOptionsServerSetLowPriorityDomainOptions( QV_PROCESS_SYSTEM_OPTIONS **options,
                                                              QV_PROCESS_DOMAIN_OPTIONS *domainOptions )
{
    set( options, members[1], domainOptions );
}

QV_PROCESS_DOMAIN_OPTIONS *
qvProcessSystemOptionsServerHighPriorityDomainOptions( QV_PROCESS_SYSTEM_OPTIONS *options )
{
    return read( options, members[2] );
}

void qvProcessSystemOptionsServerSetHighPriorityDomainOptions( QV_PROCESS_SYSTEM_OPTIONS **options,
                                                               QV_PROCESS_DOMAIN_OPTIONS *domainOptions )
{
    set( options, members[2], domainOptions );
}

QV_STORE *qvProcessSystemOptionsStore( QV_PROCESS_SYSTEM_OPTIONS *options )
{
    QV_CHECK( options );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    for ( const Member &member : members )
    {
        qv::Local<QV_STORE> subStore( qvProcessDomainOptionsStore( options->*member.field ) );
        if ( qvStoreLength( subStore ) > 0 )
        {
            qvStoreSetStoreCstr( store.edit(), member.key, -1, subStore );
        }
    }
    return store.give();
}

QV_PROCESS_SYSTEM_OPTIONS *qvProcessSystemOptionsRestore( QV_STORE *store )
{
    QV_CHECK( store );
    QV_PROCESS_SYSTEM_OPTIONS *options = qvProcessSystemOptionsCreate();
    for ( const Member &member : members )
    {
        qv::Local<QV_STORE> subStore( qvStoreStoreCstr( store, member.key, -1 ) );
        if ( subStore )
            qv::replaceWith( &( options->*member.field ), qvProcessDomainOptionsRestore( subStore ) );
    }
    return options;
}
