#include "ui/RichTextWords.h"

#include <algorithm>
#include <iterator>

namespace tarnwell::ui {

namespace {

using enum RichTextWord;

struct Row
{
    QLatin1StringView name;
    RichTextWord word;
};

// Sorted by name.
constexpr Row rows[] = {
    // clang-format off
    {QLatin1StringView("NeXTGraphic"), NextGraphic},
    {QLatin1StringView("aftncn"), Skipped},
    {QLatin1StringView("aftnsep"), Skipped},
    {QLatin1StringView("aftnsepc"), Skipped},
    {QLatin1StringView("ansi"), Ansi},
    {QLatin1StringView("ansicpg"), Ansicpg},
    {QLatin1StringView("b"), B},
    {QLatin1StringView("blue"), Blue},
    {QLatin1StringView("bullet"), Bullet},
    {QLatin1StringView("cb"), Background},
    {QLatin1StringView("cell"), Tab},
    {QLatin1StringView("cf"), Cf},
    {QLatin1StringView("colortbl"), Colortbl},
    {QLatin1StringView("comment"), Skipped},
    {QLatin1StringView("emdash"), Emdash},
    {QLatin1StringView("emspace"), Emspace},
    {QLatin1StringView("endash"), Endash},
    {QLatin1StringView("enspace"), Enspace},
    {QLatin1StringView("f"), F},
    {QLatin1StringView("fcharset"), Fcharset},
    {QLatin1StringView("fi"), Fi},
    {QLatin1StringView("field"), Field},
    {QLatin1StringView("fldinst"), Fldinst},
    {QLatin1StringView("fldrslt"), Fldrslt},
    {QLatin1StringView("fmodern"), Fmodern},
    {QLatin1StringView("fonttbl"), Fonttbl},
    {QLatin1StringView("footer"), Skipped},
    {QLatin1StringView("footerf"), Skipped},
    {QLatin1StringView("footerl"), Skipped},
    {QLatin1StringView("footerr"), Skipped},
    {QLatin1StringView("footnote"), Skipped},
    {QLatin1StringView("fs"), Fs},
    {QLatin1StringView("ftncn"), Skipped},
    {QLatin1StringView("ftnsep"), Skipped},
    {QLatin1StringView("ftnsepc"), Skipped},
    {QLatin1StringView("green"), Green},
    {QLatin1StringView("header"), Skipped},
    {QLatin1StringView("headerf"), Skipped},
    {QLatin1StringView("headerl"), Skipped},
    {QLatin1StringView("headerr"), Skipped},
    {QLatin1StringView("height"), Height},
    {QLatin1StringView("highlight"), Background},
    {QLatin1StringView("i"), I},
    {QLatin1StringView("info"), Skipped},
    {QLatin1StringView("jpegblip"), Jpegblip},
    {QLatin1StringView("ldblquote"), Ldblquote},
    {QLatin1StringView("li"), Li},
    {QLatin1StringView("line"), Line},
    {QLatin1StringView("listoverridetable"), Skipped},
    {QLatin1StringView("listtable"), Skipped},
    {QLatin1StringView("listtext"), Shown},
    {QLatin1StringView("lquote"), Lquote},
    {QLatin1StringView("ltrpar"), Ltrpar},
    {QLatin1StringView("mac"), Mac},
    {QLatin1StringView("nestcell"), Tab},
    {QLatin1StringView("nestrow"), Par},
    {QLatin1StringView("nonshppict"), Skipped},
    {QLatin1StringView("nosupersub"), Nosupersub},
    {QLatin1StringView("objdata"), Skipped},
    {QLatin1StringView("page"), Par},
    {QLatin1StringView("par"), Par},
    {QLatin1StringView("pard"), Pard},
    {QLatin1StringView("pc"), Pc},
    {QLatin1StringView("pca"), Pca},
    {QLatin1StringView("pichgoal"), Pichgoal},
    {QLatin1StringView("pict"), Pict},
    {QLatin1StringView("picwgoal"), Picwgoal},
    {QLatin1StringView("plain"), Plain},
    {QLatin1StringView("pngblip"), Pngblip},
    {QLatin1StringView("pntext"), Shown},
    {QLatin1StringView("pntxta"), Skipped},
    {QLatin1StringView("pntxtb"), Skipped},
    {QLatin1StringView("qc"), Qc},
    {QLatin1StringView("qj"), Qj},
    {QLatin1StringView("ql"), Ql},
    {QLatin1StringView("qr"), Qr},
    {QLatin1StringView("rdblquote"), Rdblquote},
    {QLatin1StringView("red"), Red},
    {QLatin1StringView("ri"), Ri},
    {QLatin1StringView("row"), Par},
    {QLatin1StringView("rquote"), Rquote},
    {QLatin1StringView("rtlpar"), Rtlpar},
    {QLatin1StringView("rxe"), Skipped},
    {QLatin1StringView("sa"), Sa},
    {QLatin1StringView("sb"), Sb},
    {QLatin1StringView("sect"), Par},
    {QLatin1StringView("shppict"), Shown},
    {QLatin1StringView("sl"), Sl},
    {QLatin1StringView("slmult"), Slmult},
    {QLatin1StringView("strike"), Strike},
    {QLatin1StringView("stylesheet"), Skipped},
    {QLatin1StringView("sub"), Sub},
    {QLatin1StringView("super"), Super},
    {QLatin1StringView("tab"), Tab},
    {QLatin1StringView("tc"), Skipped},
    {QLatin1StringView("tqc"), Tqc},
    {QLatin1StringView("tqdec"), Tqdec},
    {QLatin1StringView("tqr"), Tqr},
    {QLatin1StringView("tx"), Tx},
    {QLatin1StringView("u"), U},
    {QLatin1StringView("uc"), Uc},
    {QLatin1StringView("ul"), Ul},
    {QLatin1StringView("uld"), Ul},
    {QLatin1StringView("uldash"), Ul},
    {QLatin1StringView("uldashd"), Ul},
    {QLatin1StringView("uldashdd"), Ul},
    {QLatin1StringView("uldb"), Ul},
    {QLatin1StringView("ulhwave"), Ul},
    {QLatin1StringView("ulldash"), Ul},
    {QLatin1StringView("ulnone"), Ulnone},
    {QLatin1StringView("ulth"), Ul},
    {QLatin1StringView("ulthd"), Ul},
    {QLatin1StringView("ulthdash"), Ul},
    {QLatin1StringView("ululdbwave"), Ul},
    {QLatin1StringView("ulw"), Ul},
    {QLatin1StringView("ulwave"), Ul},
    {QLatin1StringView("v"), V},
    {QLatin1StringView("width"), Width},
    {QLatin1StringView("xe"), Skipped},
    // clang-format on
};

} // namespace

RichTextWord richTextWord(QLatin1StringView name)
{
    const auto row = std::ranges::lower_bound(rows, name, {}, &Row::name);
    return row != std::end(rows) && row->name == name ? row->word : Unknown;
}

} // namespace tarnwell::ui
