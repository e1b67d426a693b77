// SPDX-License-Identifier: MIT
#pragma once

// The settings records. Every field carries the name of its key in the settings file, and its
// initialiser is the key's default, so a default-constructed Settings is the factory state.
// The file layout (sections, order, quirks) lives in key_table.cpp and nowhere else.

#include <QSize>
#include <QString>
#include <QStringList>
#include <array>

namespace vt::settings {

/// Index of the four kinds of font output in the FontVariantSettings arrays.
enum FontKind { kRaw = 0, kStruct = 1, kBloc = 2, kDmd = 3 };

/// Settings record: see the key table for the file section of each field.
struct PixelModeSettings {
  bool rgb2 = false;
  bool SWRG = false;
  bool ccomp = false;
  int PPB = 8;
  bool bw8 = true;
  bool Neg = false;
  bool snib = false;
  bool gsch = false;
  bool ST7 = false;
  bool dore = false;
  bool Monc = true;
  bool Moni = false;
  bool C256 = false;
  bool G256 = false;
  bool G256F = true;
  bool ANTALQ = true;
  bool G256NG = true;
  bool C256NP = false;
  bool C16 = false;
  bool C8 = false;
  bool C4096 = false;
  bool C65535 = false;
  bool C18 = false;
  bool C18u = false;
  bool G16 = false;
  bool G4 = false;
  bool G42 = false;
  bool G32 = false;
  bool RGRA = false;
  bool GRL32 = false;
  bool C16M = false;
  bool PM = false;
  bool RGBA = false;
};

/// Settings record: see the key table for the file section of each field.
struct ScanSettings {
  bool tla = false;
  bool tra = false;
  bool tl = false;
  bool tr = true;
  bool td = false;
  bool tu = false;
  bool tua = false;
  bool tda = false;
  bool MSBF = true;
  bool CORN1 = true;
  bool CORN2 = false;
  bool CORN3 = false;
  bool CORN4 = false;
};

/// Settings record: see the key table for the file section of each field.
struct DisplaySettings {
  bool NOMAT = false;
  bool UMATB = false;
  int GWI = 128;
  int GHI = 64;
  bool USmat = false;
  QString LCDW = QStringLiteral("100");
  int MATH = 0;
  int MATW = 0;
  int bsiz = 0;
};

/// Settings record: see the key table for the file section of each field.
struct OutputWidthSettings {
  bool D8bc = true;
  bool D16bc = false;
  bool D32bc = false;
  bool DHec = false;
  bool DIHec = false;
};

/// Settings record: see the key table for the file section of each field.
struct DataFormatSettings {
  QString CPRE;
  QString FXHB = QStringLiteral("X");
  bool COMAS = false;
  bool COMAh = true;
  bool COMAv = true;
  bool Eoln = false;
  bool Eolcom = true;
  bool EolStr = false;
  bool EolSem = false;
  int OINT = 16;
  int ORGC = 16;
  QString VALSUF;
  QString VALpref;
  bool Addof = false;
  bool dellas = true;
  bool delallas = false;
  bool LineN = false;
  bool WithSp = true;
  QString eolst;
  QString sepst = QStringLiteral(",");
  QString cpfr;
  QString dperl;
  QString cprx;
};

/// Settings record: see the key table for the file section of each field.
struct CommentSettings {
  bool CCOM = true;
  bool STCOM = false;
  bool VBACOM = false;
  bool PSCOM = false;
  bool BSCOM = false;
  bool CU8 = true;
  bool HCO = false;
  bool Noonts = false;
  bool Noh = false;
  bool Nodcom = false;
  QString cstrt;
};

/// Settings record: see the key table for the file section of each field.
struct ArrayBlockSettings {
  QString EODS = QStringLiteral(";");
  QString PHP = QStringLiteral("$");
  bool AFF = false;
  bool BCD = false;
  bool BSD = true;
  bool WORIG = false;
  bool WSIZE = false;
  bool ColRx = false;
  QString Endst = QStringLiteral("};");
  QString begds;
  QString fpar11;
  QString fpar12;
  QString fpar13;
  QString fpar14;
};

/// Settings record: see the key table for the file section of each field.
struct OutputFileSettings {
  bool Asmf = false;
  bool libf = false;
  bool basf = false;
  bool cfil = false;
  bool crlf = true;
  bool Dnask = true;
  bool Dnapo = true;
  QString nbmfn = QStringLiteral("NewBitmap.bmp");
  QString usco = QStringLiteral("_");
  QString fexts = QStringLiteral("lib");
};

/// Settings record: see the key table for the file section of each field.
struct PostProcessSettings {
  bool asrg = false;
  bool Autop = false;
  bool Autpf = false;
  bool Sile = false;
  QString pprof = QStringLiteral("< No batch file selected >");
  QString prpopr = QStringLiteral("ConvertMultipleGraphicFiles.SPP");
  QString ppfpf;
};

/// Settings record: see the key table for the file section of each field.
struct AnimationSettings {
  bool LOOP = true;
  bool LCDSI = true;
  bool FISC = false;
  bool LCDDEL = false;
  bool DELAY = false;
  bool DElas = false;
  bool Ecli = true;
  bool PLAYMS = false;
  int ASPEE = 150;
  QString INCSYN = QStringLiteral("#include ");
  QString INCSSYN = QStringLiteral("<");
  QString INCESYN = QStringLiteral(">");
  QString FPREF = QStringLiteral("void");
  QString FSUFF = QStringLiteral("(void)");
  QString LCDBS = QStringLiteral("{");
  QString ENDSYN = QStringLiteral("};");
  QString SEPASY;
  QString DELSYN = QStringLiteral("delay");
  QString DELSTA = QStringLiteral("(");
  QString DELEND = QStringLiteral(")");
  QString LCOMPS = QStringLiteral("GLCD_xBitmap");
  QString LSTAS = QStringLiteral("(");
  QString LSTOEFF;
  QString LSTOAN;
  QString LSTOB2;
  QString LSTNB2;
  QString LENDS = QStringLiteral(")");
  bool Chfren = false;
  QString lcdUncomp = QStringLiteral("GLCD_Bitmap");
};

/// Settings record: see the key table for the file section of each field.
struct FontSettings {
  QString CARK = QStringLiteral("1");
  QString CWBRK = QStringLiteral("2");
  QString CHBRK = QStringLiteral("8");
  QString XOFSRK = QStringLiteral("6");
  QString YOFSRK = QStringLiteral("7");
  QString SARK = QStringLiteral("3");
  QString CHARSBRK = QStringLiteral("5");
  QString CSBRK = QStringLiteral("4");
  QString CSPBRK = QStringLiteral("9");
  QString FHE1 = QStringLiteral("None");
  QString FHE2 = QStringLiteral("Font Size (2)");
  QString FHE3 = QStringLiteral("Chars Width");
  QString FHE4 = QStringLiteral("Chars Height");
  QString FHE5 = QStringLiteral("First Char");
  QString FHE6 = QStringLiteral("n Chars");
  bool FEoln = false;
  bool FEolcom = false;
  bool FEolStr = true;
  bool FEolSem = false;
  bool fbo = true;
  bool wcsp = true;
  bool wfhe = true;
  bool wsta = true;
  bool wsta2b = false;
  bool wxof = true;
  bool wyof = true;
  bool uoffs = true;
  bool wua = true;
  bool wiw = true;
  bool wih = true;
  bool slc = false;
  int DEA = 0;
  int AOF = 0;
  int NCBCk = 6;
  QString SFONT = QStringLiteral("Arial");
  QString SFSTY;
  int SFONS = 10;
  bool Rawd = false;
  bool Rawd2 = true;
  bool DMDs = false;
  bool descsz2b = false;
  bool descsz = true;
  bool csbits = true;
  bool csbits2b = false;
  QString tfp14 = QStringLiteral("0AA");
  QString fonpr;
  QString fonsu;
  QString EndstF = QStringLiteral("};");
  QString Feolst = QStringLiteral(",");
};

/// Settings record: see the key table for the file section of each field.
struct FontVariantSettings {
  std::array<QString, 4> CARK{QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("1")};
  std::array<QString, 4> CWBRK{QStringLiteral("3"), QStringLiteral("3"), QStringLiteral("3"), QStringLiteral("3")};
  std::array<QString, 4> CHBRK{QStringLiteral("4"), QStringLiteral("4"), QStringLiteral("4"), QStringLiteral("4")};
  std::array<QString, 4> XOFSRK{QStringLiteral("7"), QStringLiteral("7"), QStringLiteral("7"), QStringLiteral("7")};
  std::array<QString, 4> YOFSRK{QStringLiteral("8"), QStringLiteral("8"), QStringLiteral("8"), QStringLiteral("8")};
  std::array<QString, 4> SARK{QStringLiteral("2"), QStringLiteral("2"), QStringLiteral("2"), QStringLiteral("2")};
  std::array<QString, 4> CHARSBRK{QStringLiteral("5"), QStringLiteral("5"), QStringLiteral("5"), QStringLiteral("5")};
  std::array<QString, 4> CSBRK{QStringLiteral("6"), QStringLiteral("6"), QStringLiteral("6"), QStringLiteral("6")};
  std::array<QString, 4> CSPBRK{QStringLiteral("9"), QStringLiteral("9"), QStringLiteral("9"), QStringLiteral("9")};
  std::array<bool, 4> wxof{true, true, true, false};
  std::array<bool, 4> wyof{true, true, true, false};
  std::array<bool, 4> wsta{true, true, true, false};
  std::array<bool, 4> wsta2{true, true, true, false};
  std::array<bool, 4> descsz{true, true, true, false};
  std::array<bool, 4> descsz2{true, true, true, false};
  std::array<bool, 4> csbits{true, true, true, false};
  std::array<bool, 4> csbits2{true, true, true, false};
  std::array<bool, 4> wua{true, true, true, false};
  std::array<bool, 4> wiw{true, true, true, true};
  std::array<bool, 4> wih{true, true, true, false};
  std::array<bool, 4> wcsp{true, true, true, false};
};

/// Settings record: see the key table for the file section of each field.
struct KerningSettings {
  QString KERLEND = QStringLiteral("},");
  QString KERLBEG = QStringLiteral("{");
  QString KERTBEG = QStringLiteral("{");
  QString KERTEND = QStringLiteral("};");
  QString KERSUF = QStringLiteral("[120][3]= ");
  QString KERPREF = QStringLiteral("int ");
};

/// Settings record: see the key table for the file section of each field.
struct TouchSettings {
  bool Touih = false;
  QString tfp4 = QStringLiteral("SetRegionX1");
  QString tfp5 = QStringLiteral("SetRegionX2");
  QString tfp6 = QStringLiteral("SetRegionY1");
  QString tfp7 = QStringLiteral("SetRegionY2");
  QString tfp8 = QStringLiteral("int ");
  QString tfp9 = QStringLiteral("(void)");
  QString tfp10 = QStringLiteral("{");
  QString tfp11 = QStringLiteral("};");
  QString tfp12 = QStringLiteral("return ");
  QString tfp13 = QStringLiteral("vsReport");
  int tfp2 = 0;
  int tfp3 = 8;
  int trco = 8388736;
};

/// Settings record: see the key table for the file section of each field.
struct VectorSettings {
  bool wve = false;
  bool VecBarO = false;
  bool VecBl = false;
  bool VecLiOn = true;
  bool VecCiOn = true;
  bool VecReOn = true;
  bool VecRodOn = true;
  bool VecPon = false;
  bool VecTOn = false;
  bool VecaOn = false;
  bool VecVOn = false;
  bool VecHli = false;
  bool VecFi = false;
  bool ecRleWOn = false;
  bool VedReleWn = false;
  bool VesweWed = false;
  bool VesFRwe = false;
  bool VesFRRwe = false;
  bool VesFFCwe = false;
  bool VecFn = false;
  bool VecFRn = true;
  bool VecFRRn = true;
  bool VecFCn = true;
  bool VecGotoXYOn = false;
  bool VecCSn = false;
  bool VecIFFC = false;
  bool VecIFC = false;
  bool VecIFFR = false;
  bool VecIFR = false;
  bool VecIFRR = false;
  bool VecIFFRR = false;
  bool VecColn = false;
  QString vecp1 = QStringLiteral("GCLD.Bar");
  QString vecp2 = QStringLiteral("GCLD.Line");
  QString vecp3 = QStringLiteral("GCLD.Circle");
  QString vecbmp = QStringLiteral("GCLD.DrawBitmap");
  QString vecir = QStringLiteral("GCLD.InvertRect");
  QString vecn = QStringLiteral("GCLD.PrintNumber");
  QString vecc = QStringLiteral("GCLD.PutChar");
  QString vecfu = QStringLiteral("GCLD.Function");
  QString vecfo = QStringLiteral("GCLD.SelectFont");
  QString vecini = QStringLiteral("GCLD.Init");
  QString vecp4 = QStringLiteral("GCLD.Rect");
  QString vecp3f = QStringLiteral("GCLD.FillCircle");
  QString vecp4f = QStringLiteral("GCLD.FillRect");
  QString vecp5f = QStringLiteral("GCLD.FillRoundRect");
  QString vecp5 = QStringLiteral("GCLD.RoundRect");
  QString vecp6 = QStringLiteral("GCLD.Dot");
  QString vecp7 = QStringLiteral("GCLD.Puts");
  QString vecp8 = QStringLiteral(",");
  QString vecp8T = QStringLiteral("\"");
  QString vecp9 = QStringLiteral("(");
  QString vecp10 = QStringLiteral(");");
  QString vecp11 = QStringLiteral("GLCD.Arc");
  QString vecp11f = QStringLiteral("GLCD.Pie");
  QString vecp12 = QStringLiteral("GLCD.Vline");
  QString vecgop = QStringLiteral("GLCD.GotoXY");
  QString vecp14p = QStringLiteral("GLCD.ClearScr");
  QString vecp13 = QStringLiteral("GLCD.Hline");
  QString vecp14 = QStringLiteral("GLCD.FillScr");
};

/// Settings record: see the key table for the file section of each field.
struct SerialSettings {
  QString COMP;
  QString COMB = QStringLiteral("9600");
  QString COMS = QStringLiteral("1");
  QString COMPA = QStringLiteral("None");
  QString COMD = QStringLiteral("8");
  QString FCTR = QStringLiteral("None");
  QString TERMI;
  bool rs48 = false;
};

/// Settings record: see the key table for the file section of each field.
struct SearchReplaceGrid {
  bool CO1 = false;
  bool CO2 = false;
  bool CO3 = false;
  bool CO4 = false;
  bool CO5 = false;
  bool CO6 = false;
  bool CO7 = false;
  bool CO8 = false;
  bool CO9 = false;
  bool C10 = false;
  bool C11 = false;
  bool C12 = false;
  bool C13 = false;
  bool C14 = false;
  bool C15 = false;
  bool C16 = false;
  bool C17 = false;
  bool C18 = false;
  bool C19 = false;
  bool C20 = false;
  bool C21 = false;
  bool C22 = false;
  bool C23 = false;
  bool C24 = false;
  bool C25 = false;
  bool C26 = false;
  bool C27 = false;
  bool C28 = false;
  bool C29 = false;
  bool C30 = false;
  bool C31 = false;
  bool C32 = false;
  bool C33 = false;
  bool C34 = false;
  bool C35 = false;
  bool C36 = false;
  bool C37 = false;
  bool C38 = false;
  bool C39 = false;
  bool C40 = false;
  bool C41 = false;
  bool C42 = false;
  QString CO1s;
  QString CO2s;
  QString CO3s;
  QString CO4s;
  QString CO5s;
  QString CO6s;
  QString CO7s;
  QString CO8s;
  QString CO9s;
  QString C10s;
  QString C11s;
  QString C12s;
  QString C13s;
  QString C14s;
  QString C15s;
  QString C16s;
  QString C17s;
  QString C18s;
  QString C19s;
  QString C20s;
  QString C21s;
  QString C22s;
  QString C23s;
  QString C24s;
  QString C25s;
  QString C26s;
  QString C27s;
  QString C28s;
  QString C29s;
  QString C30s;
  QString C31s;
  QString C32s;
  QString C33s;
  QString C34s;
  QString C35s;
  QString C36s;
  QString C37s;
  QString C38s;
  QString C39s;
  QString C40s;
  QString C41s;
  QString C42s;
};

/// Settings record: see the key table for the file section of each field.
struct WindowLayoutSettings {
  bool ex2sot = false;
  bool exsot = false;
  bool imsot = false;
  bool lcdsot = false;
  bool cosot = false;
  bool brsot = false;
  bool assot = false;
  bool adjsot = false;
  bool pixsot = false;
  bool ESOT = false;
  bool E2SOT = false;
  bool ASOT = false;
  bool ISOT = false;
  bool PSOT = false;
  bool SHBLU = true;
  bool SHTUT = true;
  bool SHSER = false;
  bool SHANI = false;
  bool SHBAT = false;
  bool SHTOU = false;
  bool SHVECT = false;
  bool SHCPAL = false;
  bool COPDN = false;
  bool IMD = false;
  bool ASD = false;
  bool ADD = false;
  bool PFD = false;
  bool EFD = false;
  bool E2D = false;
  bool LFD = false;
  int EXLE = 120;
  int EXTO = 60;
  bool Logws = false;
  bool WelcomeWs = false;
  bool Adjws = false;
  bool LcdWs = false;
  bool AsciiWs = true;
  bool MainWs = false;
  bool ConfWs = false;
  bool PixelWs = false;
  bool ImageWs = true;
  bool ExploWs = true;
  bool VectoWs = true;
  int mfw = 900;
  int mfh = 50;
  QString mft;
  QString mfl;
  QString vformp1;
  QString vformp2;
  QString formp1;
  QString formp2;
  QString formp3;
  QString formp4;
  QString formp5;
  QString formW3 = QStringLiteral("920");
  QString formW4 = QStringLiteral("570");
  QString formp6;
  QString formp7;
  QString et2 = QStringLiteral("600");
  QString etl2 = QStringLiteral("60");
  QString ew2 = QStringLiteral("1000");
  QString ew1 = QStringLiteral("1100");
  QString wew1 = QStringLiteral("900");
  QString eh2 = QStringLiteral("759");
  QString eta2 = QStringLiteral("1");
  int mfw_I13 = 0;
  int mfh_I13 = 0;
  int mfc = 0;
  int ifpa = 0;
  int asfp = 0;
  int adfp = 0;
  bool adfd = false;
  bool imfd = false;
  bool asfd = false;
  bool ffp1 = false;
  bool ffp2 = false;
  bool ffp3 = false;
  bool dowi = false;
  int grpi = 1;
  int lv1 = 180;
  int lv2 = 120;
  int lv3 = 80;
  int lv4 = 160;
  int CB0 = 0;
  int CB1 = 0;
  int CB2 = 0;
  int CB3 = 0;
  int CB4 = 12;
  int CB5 = 0;
  int CB6 = 3;
  int CB7 = 0;
  int CB8 = 0;
  int CB9 = 1;
  int CB10 = 0;
  int CB11 = 0;
  int CB12 = 0;
  int CB13 = 1;
};

/// Settings record: see the key table for the file section of each field.
struct ColorSettings {
  int BGCO = 16777215;
  int DOCOL = 0;
  int PSHCOL = 255;
  int CRHCOL = 8421376;
  int TRCOLOR = 1;
  bool Trans16 = false;
  bool Trans256 = false;
  int col1 = 32768;
  int col2 = 32896;
  int scol2 = 8421376;
  int col3 = 8388608;
  int col4 = 8388736;
  int col5 = 16711935;
  int col6 = 128;
  int saco = 16711680;
  int itsec = 255;
  int ghco = 12639424;
};

/// Settings record: see the key table for the file section of each field.
struct FolderSettings {
  QString PFP;
  QString BFP;
  QString OFP;
  QString FontFP;
  QString tfp1;
  QString bfpa;
};

/// Settings record: see the key table for the file section of each field.
struct OtherSettings {
  QString DPR = QStringLiteral("Microsoft Print To PDF");
  QString RELOI;
  QString PAOE;
  bool ASW = true;
  bool nde = false;
  bool ndcp = true;
  bool limf = false;
  bool exm2 = false;
  bool vxma = false;
  bool exm3 = false;
  bool exm22 = false;
  bool exm32 = false;
  bool ncodehc = false;
  bool ncodeh = false;
  bool nodesch = false;
  bool rdcc = true;
  bool cbu = true;
  bool CCBM = false;
  bool FSM = true;
  bool RSHAP = true;
  bool EX2H = false;
  bool EXH = false;
  bool DESC = false;
  bool USELS = false;
  bool BTODOC = true;
  bool RTLFO = false;
  bool OUTLF = false;
  int WBITS = 0;
  int HCO_B10 = 0;
  int SCOL = -1;
  int A1X = 0;
  int A1Y = 0;
  int TMA = 99;
  int TMI = 0;
  int TBI = 3;
  int FSELH = 0;
  int FSELW = 0;
  int MCORN = 1;
  int HSPE = 1;
  bool lgon = false;
  bool ckol = true;
  bool wwrap = false;
  bool Lnumb = false;
  bool Wrack = true;
  bool Autf = false;
  bool Antia = false;
  QString SaAf = QStringLiteral(".BMP");
  bool Usit = true;
  bool Fomask = false;
  bool Impfn = true;
  bool Pamovc = true;
  bool HidD = false;
  bool BarVi = false;
  bool MDApp = false;
  bool ExMD = false;
  bool Wap = false;
  bool Wap1 = false;
  bool Ediins = false;
  bool TRPNG = false;
  bool BrOff = true;
  bool Expws2 = true;
  bool explom2 = false;
  bool GSile = false;
  bool Capp = false;
  bool Cendes = false;
  bool CendeM = false;
  bool Invcp = false;
  bool ShwAdre = true;
  bool ShwT = true;
  bool ShowSe = true;
  bool HexRo = true;
  int splex = 270;
  int zfac = 0;
  int engi = 0;
  QString fpar1;
  QString fpar2;
  QString fpar3;
  QString fpar3L;
  QString fpar4;
  QString fpar5;
  QString fpar6;
  QString fpar7;
  QString fpar8 = QStringLiteral("400");
  QString fpar9;
  QString fpar10;
  QString eofbl;
  QString mpfo;
  QString mext = QStringLiteral(".txt");
  QString grxt = QStringLiteral(".BMP");
  QString ippfn;
  QString chk;
  QString mgpf = QStringLiteral("- define your batch source folder here-");
  QString mgex = QStringLiteral(".bmp");
  QString gpfn = QStringLiteral("< No batch file selected >");
  QString pgppf;
  QString impr = QStringLiteral("0x");
  QString adpr = QStringLiteral("0x");
  bool achb = true;
};

/// Number of slots of the dynamic lists kept in the settings file.
inline constexpr int kMruSlots = 20;        ///< mru0..mru19 of section S18
inline constexpr int kFontMruSlots = 11;    ///< fmru0..fmru10 of section S19
inline constexpr int kExtensionSlots = 21;  ///< ext0..ext20 of section FS0
inline constexpr int kCustomSizeSlots = 16; ///< cs0w/cs0h..cs15w/cs15h of section I2

/// The text every unused recent-file slot holds.
inline const QString kEmptyMruSlot = QStringLiteral("_");

/// The whole persistent state: one record per group of keys plus the dynamic lists.
struct Settings {
  PixelModeSettings pixel;
  ScanSettings scan;
  DisplaySettings display;
  OutputWidthSettings width;
  DataFormatSettings format;
  CommentSettings comment;
  ArrayBlockSettings block;
  OutputFileSettings output;
  PostProcessSettings post;
  AnimationSettings animation;
  FontSettings font;
  FontVariantSettings fontVariant;
  KerningSettings kerning;
  TouchSettings touch;
  VectorSettings vector;
  SerialSettings serial;
  SearchReplaceGrid grid;
  WindowLayoutSettings layout;
  ColorSettings color;
  FolderSettings folder;
  OtherSettings other;

  QStringList mru = QStringList(kMruSlots, kEmptyMruSlot);  ///< recently used files
  QStringList fmru = QStringList(kFontMruSlots, kEmptyMruSlot);  ///< recently used fonts
  QStringList ext = QStringList(kExtensionSlots);  ///< explorer filter extensions, empty = unset
  /// User display sizes; a slot of 0 x 0 is free.
  std::array<QSize, kCustomSizeSlots> customSizes = [] {
    std::array<QSize, kCustomSizeSlots> slots;
    slots.fill(QSize(0, 0));
    return slots;
  }();
};

}  // namespace vt::settings
