// zyn/html/unit.h
//
// The unit Zyn_htmlsupport: HTML templating and URL tools.
// Its start and stop routines, run by the package frame.

#ifndef ZYN_HTML_UNIT_H_
#define ZYN_HTML_UNIT_H_

namespace Zyn_htmlsupport {

void initialization();
void Finalization();

}  // namespace Zyn_htmlsupport

#endif  // ZYN_HTML_UNIT_H_
