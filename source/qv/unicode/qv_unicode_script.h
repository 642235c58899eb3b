#ifndef QV_UNICODE_QV_UNICODE_SCRIPT_H
#define QV_UNICODE_QV_UNICODE_SCRIPT_H

/* Scripts of code points, by the Unicode Character Database 16.0. */

#include <qv/runtime/qv_handles.h>

/* Script of a code point. The value 99 stands for none. */
typedef QV_INT QV_UNICODE_SCRIPT;
#define QV_UNICODE_SCRIPT_UNKNOWN                0
#define QV_UNICODE_SCRIPT_COMMON                 1
#define QV_UNICODE_SCRIPT_LATIN                  2
#define QV_UNICODE_SCRIPT_GREEK                  3
#define QV_UNICODE_SCRIPT_CYRILLIC               4
#define QV_UNICODE_SCRIPT_ARMENIAN               5
#define QV_UNICODE_SCRIPT_HEBREW                 6
#define QV_UNICODE_SCRIPT_ARABIC                 7
#define QV_UNICODE_SCRIPT_SYRIAC                 8
#define QV_UNICODE_SCRIPT_THAANA                 9
#define QV_UNICODE_SCRIPT_DEVANAGARI             10
#define QV_UNICODE_SCRIPT_BENGALI                11
#define QV_UNICODE_SCRIPT_GURMUKHI               12
#define QV_UNICODE_SCRIPT_GUJARATI               13
#define QV_UNICODE_SCRIPT_ORIYA                  14
#define QV_UNICODE_SCRIPT_TAMIL                  15
#define QV_UNICODE_SCRIPT_TELUGU                 16
#define QV_UNICODE_SCRIPT_KANNADA                17
#define QV_UNICODE_SCRIPT_MALAYALAM              18
#define QV_UNICODE_SCRIPT_SINHALA                19
#define QV_UNICODE_SCRIPT_THAI                   20
#define QV_UNICODE_SCRIPT_LAO                    21
#define QV_UNICODE_SCRIPT_TIBETAN                22
#define QV_UNICODE_SCRIPT_MYANMAR                23
#define QV_UNICODE_SCRIPT_GEORGIAN               24
#define QV_UNICODE_SCRIPT_HANGUL                 25
#define QV_UNICODE_SCRIPT_ETHIOPIC               26
#define QV_UNICODE_SCRIPT_CHEROKEE               27
#define QV_UNICODE_SCRIPT_CANADIAN_ABORIGINAL    28
#define QV_UNICODE_SCRIPT_OGHAM                  29
#define QV_UNICODE_SCRIPT_RUNIC                  30
#define QV_UNICODE_SCRIPT_KHMER                  31
#define QV_UNICODE_SCRIPT_MONGOLIAN              32
#define QV_UNICODE_SCRIPT_HIRAGANA               33
#define QV_UNICODE_SCRIPT_KATAKANA               34
#define QV_UNICODE_SCRIPT_BOPOMOFO               35
#define QV_UNICODE_SCRIPT_HAN                    36
#define QV_UNICODE_SCRIPT_YI                     37
#define QV_UNICODE_SCRIPT_OLD_ITALIC             38
#define QV_UNICODE_SCRIPT_GOTHIC                 39
#define QV_UNICODE_SCRIPT_DESERET                40
#define QV_UNICODE_SCRIPT_INHERITED              41
#define QV_UNICODE_SCRIPT_TAGALOG                42
#define QV_UNICODE_SCRIPT_HANUNOO                43
#define QV_UNICODE_SCRIPT_BUHID                  44
#define QV_UNICODE_SCRIPT_TAGBANWA               45
#define QV_UNICODE_SCRIPT_LIMBU                  46
#define QV_UNICODE_SCRIPT_TAI_LE                 47
#define QV_UNICODE_SCRIPT_LINEAR_B               48
#define QV_UNICODE_SCRIPT_UGARITIC               49
#define QV_UNICODE_SCRIPT_SHAVIAN                50
#define QV_UNICODE_SCRIPT_OSMANYA                51
#define QV_UNICODE_SCRIPT_CYPRIOT                52
#define QV_UNICODE_SCRIPT_BRAILLE                53
#define QV_UNICODE_SCRIPT_BUGINESE               54
#define QV_UNICODE_SCRIPT_COPTIC                 55
#define QV_UNICODE_SCRIPT_NEW_TAI_LUE            56
#define QV_UNICODE_SCRIPT_GLAGOLITIC             57
#define QV_UNICODE_SCRIPT_TIFINAGH               58
#define QV_UNICODE_SCRIPT_SYLOTI_NAGRI           59
#define QV_UNICODE_SCRIPT_OLD_PERSIAN            60
#define QV_UNICODE_SCRIPT_KHAROSHTHI             61
#define QV_UNICODE_SCRIPT_BALINESE               62
#define QV_UNICODE_SCRIPT_CUNEIFORM              63
#define QV_UNICODE_SCRIPT_PHOENICIAN             64
#define QV_UNICODE_SCRIPT_PHAGS_PA               65
#define QV_UNICODE_SCRIPT_NKO                    66
#define QV_UNICODE_SCRIPT_SUNDANESE              67
#define QV_UNICODE_SCRIPT_LEPCHA                 68
#define QV_UNICODE_SCRIPT_OL_CHIKI               69
#define QV_UNICODE_SCRIPT_VAI                    70
#define QV_UNICODE_SCRIPT_SAURASHTRA             71
#define QV_UNICODE_SCRIPT_KAYAH_LI               72
#define QV_UNICODE_SCRIPT_REJANG                 73
#define QV_UNICODE_SCRIPT_LYCIAN                 74
#define QV_UNICODE_SCRIPT_CARIAN                 75
#define QV_UNICODE_SCRIPT_LYDIAN                 76
#define QV_UNICODE_SCRIPT_CHAM                   77
#define QV_UNICODE_SCRIPT_TAI_THAM               78
#define QV_UNICODE_SCRIPT_TAI_VIET               79
#define QV_UNICODE_SCRIPT_AVESTAN                80
#define QV_UNICODE_SCRIPT_EGYPTIAN_HIEROGLYPHS   81
#define QV_UNICODE_SCRIPT_SAMARITAN              82
#define QV_UNICODE_SCRIPT_LISU                   83
#define QV_UNICODE_SCRIPT_BAMUM                  84
#define QV_UNICODE_SCRIPT_JAVANESE               85
#define QV_UNICODE_SCRIPT_MEETEI_MAYEK           86
#define QV_UNICODE_SCRIPT_IMPERIAL_ARAMAIC       87
#define QV_UNICODE_SCRIPT_OLD_SOUTH_ARABIAN      88
#define QV_UNICODE_SCRIPT_INSCRIPTIONAL_PARTHIAN 89
#define QV_UNICODE_SCRIPT_INSCRIPTIONAL_PAHLAVI  90
#define QV_UNICODE_SCRIPT_OLD_TURKIC             91
#define QV_UNICODE_SCRIPT_KAITHI                 92
#define QV_UNICODE_SCRIPT_BATAK                  93
#define QV_UNICODE_SCRIPT_BRAHMI                 94
#define QV_UNICODE_SCRIPT_MANDAIC                95
#define QV_UNICODE_SCRIPT_CHAKMA                 96
#define QV_UNICODE_SCRIPT_MEROITIC_CURSIVE       97
#define QV_UNICODE_SCRIPT_MEROITIC_HIEROGLYPHS   98
#define QV_UNICODE_SCRIPT_MIAO                   100
#define QV_UNICODE_SCRIPT_SHARADA                101
#define QV_UNICODE_SCRIPT_SORA_SOMPENG           102
#define QV_UNICODE_SCRIPT_TAKRI                  103
#define QV_UNICODE_SCRIPT_CAUCASIAN_ALBANIAN     104
#define QV_UNICODE_SCRIPT_BASSA_VAH              105
#define QV_UNICODE_SCRIPT_DUPLOYAN               106
#define QV_UNICODE_SCRIPT_ELBASAN                107
#define QV_UNICODE_SCRIPT_GRANTHA                108
#define QV_UNICODE_SCRIPT_PAHAWH_HMONG           109
#define QV_UNICODE_SCRIPT_KHOJKI                 110
#define QV_UNICODE_SCRIPT_LINEAR_A               111
#define QV_UNICODE_SCRIPT_MAHAJANI               112
#define QV_UNICODE_SCRIPT_MANICHAEAN             113
#define QV_UNICODE_SCRIPT_MENDE_KIKAKUI          114
#define QV_UNICODE_SCRIPT_MODI                   115
#define QV_UNICODE_SCRIPT_MRO                    116
#define QV_UNICODE_SCRIPT_OLD_NORTH_ARABIAN      117
#define QV_UNICODE_SCRIPT_NABATAEAN              118
#define QV_UNICODE_SCRIPT_PALMYRENE              119
#define QV_UNICODE_SCRIPT_PAU_CIN_HAU            120
#define QV_UNICODE_SCRIPT_OLD_PERMIC             121
#define QV_UNICODE_SCRIPT_PSALTER_PAHLAVI        122
#define QV_UNICODE_SCRIPT_SIDDHAM                123
#define QV_UNICODE_SCRIPT_KHUDAWADI              124
#define QV_UNICODE_SCRIPT_TIRHUTA                125
#define QV_UNICODE_SCRIPT_WARANG_CITI            126
#define QV_UNICODE_SCRIPT_AHOM                   127
#define QV_UNICODE_SCRIPT_ANATOLIAN_HIEROGLYPHS  128
#define QV_UNICODE_SCRIPT_HATRAN                 129
#define QV_UNICODE_SCRIPT_MULTANI                130
#define QV_UNICODE_SCRIPT_OLD_HUNGARIAN          131
#define QV_UNICODE_SCRIPT_SIGNWRITING            132
#define QV_UNICODE_SCRIPT_ADLAM                  133
#define QV_UNICODE_SCRIPT_BHAIKSUKI              134
#define QV_UNICODE_SCRIPT_MARCHEN                135
#define QV_UNICODE_SCRIPT_NEWA                   136
#define QV_UNICODE_SCRIPT_OSAGE                  137
#define QV_UNICODE_SCRIPT_TANGUT                 138
#define QV_UNICODE_SCRIPT_MASARAM_GONDI          139
#define QV_UNICODE_SCRIPT_NUSHU                  140
#define QV_UNICODE_SCRIPT_SOYOMBO                141
#define QV_UNICODE_SCRIPT_ZANABAZAR_SQUARE       142
#define QV_UNICODE_SCRIPT_DOGRA                  143
#define QV_UNICODE_SCRIPT_GUNJALA_GONDI          144
#define QV_UNICODE_SCRIPT_MAKASAR                145
#define QV_UNICODE_SCRIPT_MEDEFAIDRIN            146
#define QV_UNICODE_SCRIPT_HANIFI_ROHINGYA        147
#define QV_UNICODE_SCRIPT_SOGDIAN                148
#define QV_UNICODE_SCRIPT_OLD_SOGDIAN            149
#define QV_UNICODE_SCRIPT_ELYMAIC                150
#define QV_UNICODE_SCRIPT_NANDINAGARI            151
#define QV_UNICODE_SCRIPT_NYIAKENG_PUACHUE_HMONG 152
#define QV_UNICODE_SCRIPT_WANCHO                 153
#define QV_UNICODE_SCRIPT_CHORASMIAN             154
#define QV_UNICODE_SCRIPT_DIVES_AKURU            155
#define QV_UNICODE_SCRIPT_KHITAN_SMALL_SCRIPT    156
#define QV_UNICODE_SCRIPT_YEZIDI                 157
#define QV_UNICODE_SCRIPT_CYPRO_MINOAN           158
#define QV_UNICODE_SCRIPT_OLD_UYGHUR             159
#define QV_UNICODE_SCRIPT_TANGSA                 160
#define QV_UNICODE_SCRIPT_TOTO                   161
#define QV_UNICODE_SCRIPT_VITHKUQI               162
#define QV_UNICODE_SCRIPT_KAWI                   163
#define QV_UNICODE_SCRIPT_NAG_MUNDARI            164
#define QV_UNICODE_SCRIPT_GARAY                  165
#define QV_UNICODE_SCRIPT_GURUNG_KHEMA           166
#define QV_UNICODE_SCRIPT_KIRAT_RAI              167
#define QV_UNICODE_SCRIPT_OL_ONAL                168
#define QV_UNICODE_SCRIPT_SUNUWAR                169
#define QV_UNICODE_SCRIPT_TODHRI                 170
#define QV_UNICODE_SCRIPT_TULU_TIGALARI          171
/* True for 0 to 171. The functions that name a script refuse 99 all the same. */
#define QV_UNICODE_SCRIPT_OK( script ) ( (QV_INT)( script ) >= 0 && (QV_INT)( script ) <= 171 )

QV_BEGIN_DECLS

/* The script of a code point, QV_UNICODE_SCRIPT_UNKNOWN for one in no script. A ch for which QV_CHAR_OK
 * doesn't hold stops the process. */
QV_API QV_UNICODE_SCRIPT qvUnicodeScript( QV_CHAR ch );

/* The name of the Unicode data files ("Old_Italic") and the name of the constant, as strings that the caller
 * owns. A script that isn't one of the values above stops the process. */
QV_API QV_STRING *qvUnicodeScriptName( QV_UNICODE_SCRIPT script );
QV_API QV_STRING *qvUnicodeScriptSymName( QV_UNICODE_SCRIPT script );

/* The script with this name, -1 if there is none. The first takes the exact spelling only, the second any
 * spelling that is equal after case folding. */
QV_API QV_UNICODE_SCRIPT qvUnicodeScriptFromName( QV_STRING *text );
QV_API QV_UNICODE_SCRIPT qvUnicodeScriptFromNameCaseFold( QV_STRING *text );

QV_END_DECLS

#endif
