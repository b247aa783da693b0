#pragma once

#include <QLatin1StringView>

namespace tarnwell::ui {

/// The control words that mean something here.
enum class RichTextWord {
    Unknown,
    // the document's code page
    Ansi,
    Ansicpg,
    Mac,
    Pc,
    Pca,
    // destinations
    Colortbl,
    Field,
    Fldinst,
    Fldrslt,
    Fonttbl,
    NextGraphic,
    Pict,
    Shown,   ///< a group whose text is text
    Skipped, ///< a group that nobody reads
    // tables of fonts and colours
    Blue,
    Fcharset,
    Fmodern,
    Green,
    Red,
    // characters
    B,
    Background,
    Cf,
    F,
    Fs,
    I,
    Nosupersub,
    Plain,
    Strike,
    Sub,
    Super,
    Ul,
    Ulnone,
    V,
    // paragraphs
    Fi,
    Li,
    Ltrpar,
    Pard,
    Qc,
    Qj,
    Ql,
    Qr,
    Ri,
    Rtlpar,
    Sa,
    Sb,
    Sl,
    Slmult,
    Tqc,
    Tqdec,
    Tqr,
    Tx,
    // text
    Bullet,
    Emdash,
    Emspace,
    Endash,
    Enspace,
    Ldblquote,
    Line,
    Lquote,
    Par,
    Rdblquote,
    Rquote,
    Tab,
    U,
    Uc,
    // pictures
    Height,
    Jpegblip,
    Pichgoal,
    Picwgoal,
    Pngblip,
    Width,
};

/// The meaning of a control word, by its name without the backslash.
RichTextWord richTextWord(QLatin1StringView name);

} // namespace tarnwell::ui
