#pragma once
// RTF documents the platform suite works on, as a word processor writes them: placeholders split over
// runs and bookmarks, a header, a picture, a field, both ways of placing a row's definition.

#include <QByteArray>
#include <QString>

// A picture of one pixel, as the hexadecimal data of \pict.
constexpr const char *kPixelPng = "89504e470d0a1a0a0000000d49484452000000010000000108000000003a7e9b550000000a49444154789c6360000000"
                                  "02000148afa4710000000049454e44ae426082";

// Three tables: requisites (1 row, 2 columns), the lines with a header row (3 columns, its definition
// repeated before \row) and signatures (a picture and nested groups).
inline QByteArray sampleRtf()
{
    return QByteArray(R"({\rtf1\ansi\ansicpg1251\deff0\deflang1049
{\fonttbl{\f0\froman\fcharset204 Times New Roman;}{\f1\fswiss\fcharset0 Arial;}}
{\colortbl;\red0\green0\blue0;\red230\green230\blue230;}
{\*\generator Kelvarion;}{\info{\title \'d1\'f7\'e5\'f2}{\author test}}
\paperw11906\paperh16838\margl1134\margr567
{\header \pard\plain\ql\f0\fs16 #MainName#\par}
\pard\plain\qc\f0\fs24 {\b #Main}{\i Name#}, {\*\bkmkstart top}\'d1\'f7\'e5\'f2{\*\bkmkend top} \'b9 #nomer#\par
\trowd\trgaph108\trleft0\cellx3000\cellx6000
\pard\plain\intbl\f0 \'c1\'e0\'ed\'ea\cell\pard\plain\intbl\f0 #MainBank#\cell\row
\pard\plain\f0 #Main\plain\f1 Tel#\par
\trowd\irow0\irowband0\lastrow\trgaph108\trleft-108\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\clcbpat2\cellx1000)"
R"(\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\cellx5000\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\cellx7000
\pard\plain\intbl\qc\f0\fs20 {\b \'b9}\cell\pard\plain\intbl\ql\f0\fs20 {\b \'cd\'e0\'e8\'ec\'e5\'ed\'ee\'e2\'e0\'ed\'e8\'e5}\cell)"
R"(\pard\plain\intbl\qr\f0\fs20 {\b \'d1\'f3\'ec\'ec\'e0}\cell
{\trowd\irow0\irowband0\lastrow\trgaph108\trleft-108\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\clcbpat2\cellx1000)"
R"(\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\cellx5000\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\cellx7000\row}
\pard\plain\f0 \'c8\'f2\'ee\'e3\'ee: #itog# {\field{\*\fldinst PAGE}{\fldrslt 1}}\par
\trowd\trgaph108\cellx4000\cellx8000
\pard\plain\intbl\f0 {\pict\pngblip\picw10\pich10 )" + QByteArray(kPixelPng) + R"(}\cell\pard\plain\intbl\f0 {{{#Main\i Chief#}}}\cell\row
\pard\plain\f0 \u1055\'cf\u1086?\uc2\u1082\'ea\'ea\par
})");
}

// The body of a one-paragraph document with the given code page and fonts.
inline QByteArray rtfWith(const QByteArray &body, const QByteArray &codepage = "\\ansicpg1251")
{
    return "{\\rtf1\\ansi" + codepage + "\\deff0{\\fonttbl{\\f0\\fcharset0 Arial;}{\\f1\\fcharset204 Arial;}}\n"
           + body + "\\par\n}";
}
