#include "history/svg_chronogram.h"

#include <algorithm>
#include <string>

namespace {

using L = SvgLayout;

constexpr double kCharWidth = 6.6;

std::string escaped(const char* text) {
  std::string out;
  for (; *text; ++text) {
    switch (*text) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += *text;
    }
  }
  return out;
}

const char* const kPreamble =
    "<defs>\n"
    "<pattern id=\"nil\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\" "
    "patternTransform=\"rotate(45)\"><rect width=\"6\" height=\"6\" fill=\"#f6c8c8\"/>"
    "<rect width=\"2\" height=\"6\" fill=\"#c00000\"/></pattern>\n"
    "<pattern id=\"div0\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\" "
    "patternTransform=\"rotate(-45)\"><rect width=\"6\" height=\"6\" fill=\"#fbe2a8\"/>"
    "<rect width=\"2\" height=\"6\" fill=\"#b86000\"/></pattern>\n"
    "</defs>\n"
    "<style>text{font-family:monospace;font-size:11px;fill:#202020}"
    ".wave{stroke:#106010;stroke-width:2;fill:none}.high{fill:#bfe6bf}"
    ".bus{fill:#dde6f6;stroke:#203870;stroke-width:1.5}"
    ".reset{stroke:#2050e0;stroke-width:2;stroke-dasharray:4 2}</style>\n";

class Drawing {
 public:
  Drawing(FILE* out, const RunHistory& h) : out_(out), h_(h) {}

  void write() {
    const size_t first = h_.first_kept(), end = h_.end();
    const size_t page_ticks = std::min(end - first, kSvgPageTicks);
    const size_t n_pages = end == first ? 1 : (end - first + kSvgPageTicks - 1) / kSvgPageTicks;
    // Wide enough for the legend, however short the run.
    const int width = std::max(L::kLabelWidth + static_cast<int>(page_ticks) * L::kTickWidth + 20, 560);
    const int height = L::kHeader + static_cast<int>(n_pages) * page_height();
    std::fprintf(out_,
                 "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" "
                 "viewBox=\"0 0 %d %d\">\n%s<rect width=\"100%%\" height=\"100%%\" fill=\"white\"/>\n",
                 width, height, width, height, kPreamble);
    header(first);
    for (size_t p = 0; p < n_pages; ++p) {
      const size_t from = first + p * kSvgPageTicks;
      page(L::kHeader + static_cast<int>(p) * page_height(), from, std::min(end, from + kSvgPageTicks));
    }
    std::fprintf(out_, "</svg>\n");
  }

 private:
  int page_height() const {
    return L::kAxis + static_cast<int>(h_.signals().size()) * L::kRowHeight + L::kPageGap;
  }

  void header(size_t first) {
    std::fprintf(out_, "<text x=\"8\" y=\"16\" font-weight=\"bold\">%s</text>\n",
                 escaped(h_.node_name()).c_str());
    // The legend: a swatch and its meaning, left to right.
    std::fprintf(out_,
                 "<rect x=\"8\" y=\"26\" width=\"24\" height=\"12\" fill=\"url(#nil)\"/>"
                 "<text x=\"36\" y=\"36\">nil</text>\n"
                 "<rect x=\"80\" y=\"26\" width=\"24\" height=\"12\" fill=\"url(#div0)\"/>"
                 "<text x=\"108\" y=\"36\">division by zero</text>\n"
                 "<line x1=\"240\" y1=\"24\" x2=\"240\" y2=\"40\" class=\"reset\"/>"
                 "<text x=\"246\" y=\"36\">reset</text>\n"
                 "<text x=\"300\" y=\"36\">blank: absent   *: aborted step</text>\n");
    if (first > 0) {
      std::fprintf(out_, "<text x=\"8\" y=\"54\">the first %zu steps are not drawn: only the last %zu are kept</text>\n",
                   first, h_.window());
    }
  }

  int x_of(size_t t, size_t from) const {
    return L::kLabelWidth + static_cast<int>(t - from) * L::kTickWidth;
  }

  void page(int top, size_t from, size_t end) {
    const int rows_top = top + L::kAxis;
    const int rows_bottom = rows_top + static_cast<int>(h_.signals().size()) * L::kRowHeight;
    for (size_t t = from; t < end; ++t) {
      const Tick& tick = h_.tick(t);
      const int x = x_of(t, from);
      if (tick.aborted()) {
        std::fprintf(out_, "<text x=\"%d\" y=\"%d\">*</text>\n", x + 9, top + 14);
      } else {
        std::fprintf(out_, "<text x=\"%d\" y=\"%d\" font-size=\"9px\">%d</text>\n", x + 2, top + 14,
                     tick.step);
      }
    }
    for (size_t i = 0; i < h_.signals().size(); ++i) {
      row(rows_top + static_cast<int>(i) * L::kRowHeight, i, from, end);
    }
    for (size_t t = from; t < end; ++t) {
      if (h_.tick(t).after_reset) reset_mark(x_of(t, from), top, rows_bottom);
    }
    if (end == h_.end() && h_.reset_pending()) reset_mark(x_of(end, from), top, rows_bottom);
  }

  void reset_mark(int x, int top, int bottom) {
    std::fprintf(out_, "<line x1=\"%d\" y1=\"%d\" x2=\"%d\" y2=\"%d\" class=\"reset\"/>\n", x, top + 2,
                 x, bottom);
  }

  void row(int y, size_t i, size_t from, size_t end) {
    const Signal& s = h_.signals()[i];
    std::fprintf(out_, "<text x=\"8\" y=\"%d\">%s%s</text>\n", y + 18,
                 escaped(s.port->name).c_str(), s.output ? "" : " (in)");
    // Runs of one state and value, each drawn as a whole.
    for (size_t t = from; t < end;) {
      const Sample& first = h_.samples(t)[i];
      size_t next = t + 1;
      while (next < end && same_sample(s.port->kind, h_.samples(next)[i], first)) ++next;
      segment(y, s.port->kind, first, x_of(t, from), x_of(next, from));
      t = next;
    }
  }

  void segment(int y, PortKind kind, const Sample& s, int x0, int x1) {
    const int hi = y + L::kHigh, lo = y + L::kLow;
    switch (s.state) {
      case SampleState::kAbsent:
        return;
      case SampleState::kNil:
      case SampleState::kDivZero:
        std::fprintf(out_, "<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" fill=\"url(#%s)\"/>\n",
                     x0, hi, x1 - x0, lo - hi, s.state == SampleState::kNil ? "nil" : "div0");
        return;
      case SampleState::kDefined:
        break;
    }
    if (kind == PortKind::kBool) {
      if (s.value.i) {
        std::fprintf(out_, "<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" class=\"high\"/>\n", x0,
                     hi, x1 - x0, lo - hi);
        std::fprintf(out_, "<path d=\"M%d %dV%dH%dV%d\" class=\"wave\"/>\n", x0, lo, hi, x1, lo);
      } else {
        std::fprintf(out_, "<path d=\"M%d %dH%d\" class=\"wave\"/>\n", x0, lo, x1);
      }
      return;
    }
    const int mid = (hi + lo) / 2;
    std::fprintf(out_, "<path d=\"M%d %dL%d %dH%dL%d %dL%d %dH%dZ\" class=\"bus\"/>\n", x0, mid,
                 x0 + 3, hi, x1 - 3, x1, mid, x1 - 3, lo, x0 + 3);
    const std::string text = escaped(sample_label(kind, s).c_str());
    if (static_cast<double>(text.size()) * kCharWidth <= x1 - x0 - 6) {
      std::fprintf(out_, "<text x=\"%d\" y=\"%d\" text-anchor=\"middle\">%s</text>\n", (x0 + x1) / 2,
                   y + 18, text.c_str());
    }
  }

  FILE* out_;
  const RunHistory& h_;
};

}  // namespace

void write_svg(FILE* out, const RunHistory& history) {
  Drawing(out, history).write();
}
