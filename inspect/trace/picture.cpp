// SPDX-License-Identifier: MIT
#include "picture.h"

namespace Zentu::Inspect {

// Characters that XML cannot hold become marks.
static QString escaped(const QString& text)
{
    QString result = text;
    for (QChar& c : result) {
        if (c.unicode() < 0x20 || c.unicode() >= 0xfffe || c.isSurrogate())
            c = QChar::ReplacementCharacter;
    }
    return result.toHtmlEscaped();
}

static QString number(double value)
{
    return QString::number(value, 'f', 1);
}

void Picture::write(const QString& element)
{
    m_body += element.toUtf8();
    m_body += '\n';
}

void Picture::text(double x, double y, const QString& text, Align align)
{
    write(QStringLiteral("<text x=\"%1\" y=\"%2\"%3>%4</text>")
              .arg(number(x), number(y),
                  QLatin1String(align == Right ? " text-anchor=\"end\"" : ""), escaped(text)));
}

void Picture::heading(double x, double y, const QString& text)
{
    write(QStringLiteral("<text x=\"%1\" y=\"%2\" class=\"heading\">%3</text>")
              .arg(number(x), number(y), escaped(text)));
}

void Picture::line(double x1, double y1, double x2, double y2, const char* colour, double width)
{
    write(QStringLiteral("<line x1=\"%1\" y1=\"%2\" x2=\"%3\" y2=\"%4\" stroke=\"%5\" "
                         "stroke-width=\"%6\"/>")
              .arg(number(x1), number(y1), number(x2), number(y2), QLatin1String(colour),
                  number(width)));
}

void Picture::box(
    double x, double y, double width, double height, const char* style, const QString& title)
{
    write(QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" class=\"%5\">"
                         "<title>%6</title></rect>")
              .arg(number(x), number(y), number(width), number(height), QLatin1String(style),
                  escaped(title)));
}

void Picture::arrow(double x1, double y1, double x2, double y2, double width, const QString& title)
{
    const double middle = (x1 + x2) / 2;
    write(QStringLiteral("<path d=\"M%1 %2 C%3 %2 %3 %4 %5 %4\" fill=\"none\" stroke=\"#1971c2\" "
                         "stroke-opacity=\".6\" stroke-width=\"%6\" "
                         "marker-end=\"url(#head)\"><title>%7</title></path>")
              .arg(number(x1), number(y1), number(middle), number(y2), number(x2), number(width),
                  escaped(title)));
}

void Picture::beginGroup(const QString& name)
{
    write(QStringLiteral("<g data-name=\"%1\">").arg(escaped(name)));
}

void Picture::endGroup()
{
    write(QStringLiteral("</g>"));
}

QByteArray Picture::svg(double width, double height) const
{
    const QString head = QStringLiteral(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %1 %2\" width=\"%1\" "
        "height=\"%2\">\n<style>svg{background:#fff;color:#222}"
        "text{font:12px sans-serif;fill:currentColor}.heading{font-weight:bold}"
        ".held{fill:#2b8a3e}"
        ".global{fill:#868e96}.active{fill:#1971c2}.node{fill:#f1f3f5;stroke:#868e96}"

        "</style>\n<style>@media(prefers-color-scheme:dark){svg{background:#1b1b1b;color:#ddd}"
        ".node{fill:#2b2b2b}}</style>\n"
        "<defs><marker id=\"head\" viewBox=\"0 0 6 6\" refX=\"6\" refY=\"3\" markerWidth=\"8\" "
        "markerHeight=\"8\" markerUnits=\"userSpaceOnUse\" orient=\"auto\">"
        "<path d=\"M0 0L6 3L0 6z\" fill=\"#1971c2\"/></marker></defs>\n")
                             .arg(number(width), number(height));
    return head.toUtf8() + m_body + "</svg>\n";
}

QByteArray page(const QString& title, const QByteArray& svg)
{
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<title>"
        + escaped(title).toUtf8()
        + "</title>\n<style>body{margin:0;font:14px sans-serif}"
          "form{position:sticky;top:0;padding:6px;background:#8883;backdrop-filter:blur(8px)}"
          "#view{overflow:auto}svg{display:block;height:auto;max-width:none}"
          "g.miss{opacity:.15}</style>\n"
          "<form onsubmit=\"return false\"><label>Search <input id=\"search\"></label> "
          "<button id=\"in\">Zoom in</button> <button id=\"out\">Zoom out</button> "
          "<span id=\"count\" role=\"status\"></span> Ctrl and the wheel zoom, too</form>\n"
          "<div id=\"view\">\n"
        + svg
        + "</div>\n<script>\n"
          "const svg=document.querySelector('svg'),view=document.getElementById('view');\n"
          "const box=svg.viewBox.baseVal;let zoom=1;\n"
          "function resize(z,x){const before=zoom;zoom=Math.min(200,Math.max(.2,z));\n"
          " svg.setAttribute('width',box.width*zoom);svg.setAttribute('height',box.height);\n"
          " svg.setAttribute('preserveAspectRatio','none');\n"
          " view.scrollLeft=(view.scrollLeft+x)*zoom/before-x;}\n"
          "view.addEventListener('wheel',e=>{if(!e.ctrlKey)return;e.preventDefault();\n"
          " resize(zoom*(e.deltaY<0?1.25:.8),e.clientX);},{passive:false});\n"
          "document.getElementById('in').onclick=()=>resize(zoom*1.5,view.clientWidth/2);\n"
          "document.getElementById('out').onclick=()=>resize(zoom/1.5,view.clientWidth/2);\n"
          "document.getElementById('search').oninput=e=>{const t=e.target.value.toLowerCase();"
          "let n=0;\n"
          " for(const g of document.querySelectorAll('g[data-name]')){\n"
          "  const hit=!t||g.dataset.name.toLowerCase().includes(t);if(hit)n++;\n"
          "  g.classList.toggle('miss',!hit);}\n"
          " document.getElementById('count').textContent=t?n+' found':'';};\n"
          "</script>\n</html>\n";
}

} // namespace Zentu::Inspect
