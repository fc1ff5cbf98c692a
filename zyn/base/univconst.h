// zyn/base/univconst.h
//
// Numeric constants: mathematical constants, the limits of the floating-point
// types as the library counts them, and ln(n!) for n up to 1000. The values
// are the stored ones, bit for bit; a few differ in the last place from the
// double nearest the exact value (uc_sqrt2pi is one).

#ifndef ZYN_BASE_UNIVCONST_H_
#define ZYN_BASE_UNIVCONST_H_

#include <array>
#include <limits>

namespace Zyn_univconst {

inline constexpr double uc_e = 2.718281828459045;
inline constexpr double uc_etom1 = 0.36787944117144233;
inline constexpr double uc_lg2 = 0.3010299956639812;
inline constexpr double uc_lg5 = 0.6989700043360189;
inline constexpr double uc_lge = 0.4342944819032518;
inline constexpr double uc_lgPi = 0.49714987269413385;
inline constexpr double uc_ln10 = 2.302585092994046;
inline constexpr double uc_ln2 = 0.6931471805599453;
inline constexpr double uc_lnPi = 1.1447298858494002;
inline constexpr double uc_PiH = 1.5707963267948966;
inline constexpr double uc_PiSqr = 9.869604401089358;
inline constexpr double uc_Pitom1 = 0.3183098861837907;
inline constexpr double uc_sqrt2 = 1.4142135623730951;
inline constexpr double uc_sqrt2pi = 2.5066282746310007;
inline constexpr double uc_sqrt2pitom1 = 0.3989422804014327;
inline constexpr double uc_GoldenR = 1.618033988749895;

// Limits. uc_MinDouble is the smallest denormal; uc_MaxDouble (1.7e308) is
// the library's ceiling, below the greatest double. Extended is 64 bits wide
// here, so its limits are 0 and +infinity, while the uc_ln*Extended values
// still describe the old 80-bit type.
inline constexpr double uc_MinReal = 2.9e-39;
inline constexpr double uc_MaxReal = 1.7e+38;
inline constexpr double uc_MinSingle = 1.5e-45;
inline constexpr double uc_MaxSingle = 3.4e+38;
inline constexpr double uc_MinDouble = 5e-324;
inline constexpr double uc_MaxDouble = 1.7e+308;
inline constexpr double uc_MinExtended = 0.0;
inline constexpr double uc_MaxExtended = std::numeric_limits<double>::infinity();
inline constexpr double uc_lnMinDouble = -744.4281322176367;
inline constexpr double uc_lnMaxDouble = 709.7268368932282;
inline constexpr double uc_lnMaxExtended = 11356.444988826437;
inline constexpr double uc_lnMinExtended = -11398.817861568059;
inline constexpr double uc_lnMinReal = -88.73610788977535;
inline constexpr double uc_lnMaxReal = 88.02886178483591;
inline constexpr double uc_lnMinSingle = -103.21086407662389;
inline constexpr double uc_lnMaxSingle = 88.72200896539586;

// uc_LnFactorial[n] is ln(n!) to 15 significant digits, n from 0 to 1000.
extern const std::array<double, 1001> uc_LnFactorial;

// Unit start and stop, run by the package frame; both do nothing.
void initialization();
void Finalization();

}  // namespace Zyn_univconst

#endif  // ZYN_BASE_UNIVCONST_H_
