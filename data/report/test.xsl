<?xml version="1.0" encoding="UTF-8"?>
<!-- The report of a test: one HTML page that needs nothing beside itself, and that is printed on A4 with a head and a foot
     on each sheet. The XML holds every value and every caption as the
     reader sees them. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:svg="http://www.w3.org/2000/svg" xmlns:str="http://exslt.org/strings"
                exclude-result-prefixes="svg str">
  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

  <!-- For the foot of each sheet: the name of the file, and name and version of the program. -->
  <xsl:param name="file"/>
  <xsl:param name="program"/>

  <!-- How far the legend of the chart is moved to the right, past the title of the axis. -->
  <xsl:variable name="legendPlace" select="'0'"/>

  <xsl:template name="text">
    <xsl:param name="key"/>
    <!-- A test's own caption stands behind the one that all tests share. -->
    <xsl:value-of select="(/report/captions/line[@name = $key])[last()]/@value"/>
  </xsl:template>

  <xsl:template name="heading">
    <xsl:param name="key"/>
    <h2><xsl:call-template name="text"><xsl:with-param name="key" select="$key"/></xsl:call-template></h2>
  </xsl:template>

  <xsl:template name="words">
    <xsl:param name="key"/>
    <th scope="col" class="left">
      <xsl:call-template name="text"><xsl:with-param name="key" select="$key"/></xsl:call-template>
    </th>
  </xsl:template>

  <!-- A sign that differs in shape, beside the word. -->
  <xsl:template name="sign">
    <xsl:param name="mark"/>
    <xsl:choose>
      <xsl:when test="$mark = 'passed'">&#x2714;&#xA0;</xsl:when>
      <xsl:when test="$mark = 'failed' or $mark = 'stopped' or $mark = 'fault'">&#x2718;&#xA0;</xsl:when>
    </xsl:choose>
  </xsl:template>

  <!-- A text within quotes in a style sheet, and in the element "style", which knows no entities. -->
  <xsl:template name="quoted">
    <xsl:param name="text"/>
    <xsl:variable name="plain" select="str:replace(str:replace($text, '\', '\5c '), '&quot;', '\22 ')"/>
    <xsl:value-of select="str:replace(str:replace($plain, '&lt;', '\3c '), '&#10;', '\a ')"/>
  </xsl:template>

  <xsl:template name="quotedText">
    <xsl:param name="key"/>
    <xsl:call-template name="quoted">
      <xsl:with-param name="text">
        <xsl:call-template name="text"><xsl:with-param name="key" select="$key"/></xsl:call-template>
      </xsl:with-param>
    </xsl:call-template>
  </xsl:template>

  <!-- Head and foot as texts, not as strings set by elements: browsers know only those. -->
  <xsl:template name="sheets">
          @page {
            size: A4; margin: 20mm 15mm;
            @top-left { width: 100%; font: bold 10px "DejaVu Sans", sans-serif; letter-spacing: .06em; color: #6b3405;
              content: "<xsl:if test="@origin != 'device'">
                <xsl:call-template name="quotedText"><xsl:with-param name="key" select="@origin"/></xsl:call-template>
              </xsl:if>"; }
            @bottom-left { width: 80%; font: 9px "DejaVu Sans", sans-serif; color: #56606b; overflow-wrap: anywhere;
              content: "<xsl:call-template name="quoted"><xsl:with-param name="text" select="$file"/></xsl:call-template>
              <xsl:text> · </xsl:text>
              <xsl:call-template name="quoted"><xsl:with-param name="text" select="$program"/></xsl:call-template>"; }
            @bottom-right { width: 20%; font: 9px "DejaVu Sans", sans-serif; color: #56606b;
              content: "<xsl:call-template name="quotedText">
                <xsl:with-param name="key" select="'page'"/>
              </xsl:call-template>" counter(page) "<xsl:call-template name="quotedText">
                <xsl:with-param name="key" select="'ofPages'"/>
              </xsl:call-template>" counter(pages); }
          }
          @media print {
            body { margin: 0; padding: 0; max-width: none; font-size: 11px; }
            svg { max-height: 85mm; }
            th, td { padding: .22em .6em; }
            h2 { break-after: avoid; }
            thead { display: table-header-group; }
            h2, tr, svg, .simulated, .outcome, .signature, .lines { break-inside: avoid; }
          }
  </xsl:template>

  <xsl:template match="/report">
    <html lang="{substring(@language, 1, 2)}">
      <head>
        <meta name="viewport" content="width=device-width, initial-scale=1"/>
        <title>
          <xsl:call-template name="text"><xsl:with-param name="key" select="'title'"/></xsl:call-template>
        </title>
        <style>
          body { font: 15px/1.45 "DejaVu Sans", "Segoe UI", sans-serif; color: #1d2126; background: #fff;
                 max-width: 60em; margin: 2em auto; padding: 0 1.5em; }
          h1 { font-size: 1.7em; margin: 0; }
          h2 { font-size: 1.05em; margin: 1.8em 0 .5em; padding-bottom: .25em; border-bottom: 1px solid #c5ccd3; }
          .subtitle { color: #56606b; margin: .2em 0 1.2em; }
          .simulated { border: 2px solid #a8520c; background: #fff4e5; color: #6b3405; padding: .7em 1em;
                       margin: 1em 0; font-weight: bold; }
          .outcome { display: flex; flex-wrap: wrap; align-items: baseline; padding: .6em 1em;
                     border: 1px solid #c5ccd3; border-left-width: 6px; margin: 1em 0; }
          .outcome b, .outcome span { margin: .2em 2.5em .2em 0; }
          .outcome b { font-size: 1.25em; }
          .outcome.passed { border-left-color: #1f7a3d; } .outcome.passed b { color: #1f7a3d; }
          .outcome.failed, .outcome.stopped, .outcome.fault { border-left-color: #b3261e; }
          .outcome.failed b, .outcome.stopped b, .outcome.fault b { color: #b3261e; }
          .columns { display: flex; flex-wrap: wrap; margin-right: -3em; }
          .columns > div { flex: 1 1 20em; margin-right: 3em; }
          table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; }
          th { text-align: right; font-weight: 600; color: #56606b; background: #f3f5f7; }
          th, td { padding: .35em .6em; border-bottom: 1px solid #dfe4e8; }
          td { text-align: right; }
          .lines th { text-align: left; font-weight: normal; background: none; width: 45%; padding-left: 0; }
          .lines th.group { font-weight: 600; padding-top: .9em; }
          .lines td { overflow-wrap: anywhere; }
          .lines td, .left, th.left { text-align: left; }
          .mark-passed, .mark-failed { white-space: nowrap; }
          .mark-passed { color: #1f7a3d; } .mark-failed { color: #b3261e; font-weight: 600; }
          tr.failed td { background: #fdf0ef; }
          svg { display: block; width: 100%; height: auto; margin-top: .5em; }
          .signature { display: flex; margin: 3em -3em 0 0; color: #56606b; }
          .signature div { flex: 1; margin-right: 3em; border-top: 1px solid #8b959f; padding-top: .3em; }
          <xsl:call-template name="sheets"/>
        </style>
      </head>
      <body>
        <h1><xsl:call-template name="text"><xsl:with-param name="key" select="'title'"/></xsl:call-template></h1>
        <p class="subtitle"><xsl:value-of select="@subtitle"/></p>
        <xsl:if test="@origin != 'device'">
          <div class="simulated" role="note">
            <xsl:call-template name="text">
              <xsl:with-param name="key" select="concat(@origin, 'Notice')"/>
            </xsl:call-template>
          </div>
        </xsl:if>
        <xsl:call-template name="outcome"/>
        <xsl:apply-templates select="nameplate[line]" mode="section"/>
        <div class="columns">
          <xsl:for-each select="settings | plan">
            <div><xsl:apply-templates select="." mode="section"/></div>
          </xsl:for-each>
        </div>
        <xsl:call-template name="heading"><xsl:with-param name="key" select="'chart'"/></xsl:call-template>
        <xsl:apply-templates select="chart"/>
        <xsl:if test="results/point">
          <xsl:call-template name="heading"><xsl:with-param name="key" select="'results'"/></xsl:call-template>
          <xsl:apply-templates select="results"/>
        </xsl:if>
        <xsl:if test="@verdict != 'none' and results/value">
          <xsl:call-template name="heading"><xsl:with-param name="key" select="'values'"/></xsl:call-template>
          <xsl:call-template name="values"/>
        </xsl:if>
        <xsl:apply-templates select="circumstances[line]" mode="section"/>
        <div class="signature">
          <div><xsl:call-template name="text"><xsl:with-param name="key" select="'tester'"/></xsl:call-template></div>
          <div><xsl:call-template name="text"><xsl:with-param name="key" select="'approver'"/></xsl:call-template></div>
        </div>
      </body>
    </html>
  </xsl:template>

  <xsl:template name="outcome">
    <!-- What has been changed by hand is not shown as a passed test. -->
    <xsl:variable name="shown">
      <xsl:if test="@verdict != 'passed' or not(@changedByHand)"><xsl:value-of select="@verdict"/></xsl:if>
    </xsl:variable>
    <div class="outcome {$shown}">
      <b>
        <xsl:call-template name="sign"><xsl:with-param name="mark" select="$shown"/></xsl:call-template>
        <xsl:value-of select="@outcome"/>
      </b>
      <xsl:if test="string(@device)">
        <span>
          <xsl:call-template name="text"><xsl:with-param name="key" select="'device'"/></xsl:call-template>
          <xsl:text>: </xsl:text><xsl:value-of select="@device"/>
        </span>
      </xsl:if>
      <xsl:if test="string(@startedAt)">
        <span>
          <xsl:call-template name="text"><xsl:with-param name="key" select="'startedAt'"/></xsl:call-template>
          <xsl:text>: </xsl:text><xsl:value-of select="@startedAt"/>
        </span>
      </xsl:if>
    </div>
  </xsl:template>

  <xsl:template match="nameplate | settings | plan | circumstances" mode="section">
    <xsl:call-template name="heading"><xsl:with-param name="key" select="name()"/></xsl:call-template>
    <table class="lines">
      <xsl:for-each select="line">
        <xsl:choose>
          <xsl:when test="@value = ''">
            <tr><th scope="rowgroup" colspan="2" class="group"><xsl:value-of select="@name"/></th></tr>
          </xsl:when>
          <xsl:otherwise>
            <tr><th scope="row"><xsl:value-of select="@name"/></th><td><xsl:value-of select="@value"/></td></tr>
          </xsl:otherwise>
        </xsl:choose>
      </xsl:for-each>
    </table>
  </xsl:template>

  <xsl:template match="results">
    <table>
      <thead>
        <tr>
          <xsl:for-each select="column">
            <xsl:choose>
              <xsl:when test="@kind = 'word'"><th scope="col" class="left"><xsl:value-of select="@title"/></th></xsl:when>
              <xsl:otherwise><th scope="col"><xsl:value-of select="@title"/></th></xsl:otherwise>
            </xsl:choose>
          </xsl:for-each>
        </tr>
      </thead>
      <tbody>
        <xsl:for-each select="point">
          <tr class="{@mark}">
            <xsl:apply-templates select="../column"><xsl:with-param name="row" select="."/></xsl:apply-templates>
          </tr>
        </xsl:for-each>
      </tbody>
    </table>
  </xsl:template>

  <!-- A column's cell in a row. -->
  <xsl:template match="column">
    <xsl:param name="row"/>
    <xsl:variable name="cell" select="string($row/@*[name() = current()/@name])"/>
    <xsl:choose>
      <xsl:when test="@name = 'verdict'">
        <xsl:for-each select="$row"><xsl:call-template name="verdict"/></xsl:for-each>
      </xsl:when>
      <xsl:when test="@kind = 'word'"><td class="left"><xsl:value-of select="$cell"/></td></xsl:when>
      <xsl:otherwise><td><xsl:value-of select="$cell"/></td></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="verdict">
    <td class="left mark-{@mark}">
      <xsl:call-template name="sign"><xsl:with-param name="mark" select="@mark"/></xsl:call-template>
      <xsl:value-of select="@verdict"/>
    </td>
  </xsl:template>

  <xsl:template name="values">
    <table>
      <thead>
        <tr>
          <xsl:call-template name="words"><xsl:with-param name="key" select="'quantity'"/></xsl:call-template>
          <th scope="col">
            <xsl:call-template name="text"><xsl:with-param name="key" select="'value'"/></xsl:call-template>
          </th>
          <xsl:call-template name="words"><xsl:with-param name="key" select="'verdict'"/></xsl:call-template>
        </tr>
      </thead>
      <tbody>
        <xsl:for-each select="results/value">
          <tr class="{@mark}">
            <td class="left"><xsl:value-of select="@name"/></td>
            <td><xsl:value-of select="@value"/></td>
            <xsl:call-template name="verdict"/>
          </tr>
        </xsl:for-each>
      </tbody>
    </table>
  </xsl:template>

  <!-- The plot's own units; around it a margin for the labels. Places are never calculated here: numbers that XPath
       writes follow the user's locale. -->
  <xsl:template match="chart">
    <svg xmlns="http://www.w3.org/2000/svg" role="img" viewBox="{@viewBox}"
         font-family="DejaVu Sans, Segoe UI, sans-serif" font-size="12" fill="#1d2126">
      <title><xsl:value-of select="@description"/></title>
      <g stroke="#e6eaee">
        <xsl:for-each select="x[@label = '']">
          <line x1="{@at}" x2="{@at}" y1="0" y2="{../@height}"/>
        </xsl:for-each>
        <xsl:for-each select="y[@label = '']">
          <line x1="0" x2="{../@width}" y1="{@at}" y2="{@at}"/>
        </xsl:for-each>
      </g>
      <g stroke="#c5ccd3">
        <xsl:for-each select="x[@label != '']">
          <line x1="{@at}" x2="{@at}" y1="0" y2="{../@height}"/>
        </xsl:for-each>
        <xsl:for-each select="y[@label != '']">
          <line x1="0" x2="{../@width}" y1="{@at}" y2="{@at}"/>
        </xsl:for-each>
      </g>
      <clipPath id="plot"><rect width="{@width}" height="{@height}"/></clipPath>
      <g clip-path="url(#plot)">
        <xsl:for-each select="band">
          <polygon points="{@points}" fill="#2a6fb0" fill-opacity="0.18"/>
        </xsl:for-each>
        <xsl:for-each select="curve">
          <polyline points="{@points}" fill="none" stroke="#2a6fb0" stroke-width="2"/>
        </xsl:for-each>
      </g>
      <rect width="{@width}" height="{@height}" fill="none" stroke="#56606b"/>
      <g text-anchor="middle">
        <xsl:for-each select="x[@label != '']">
          <text x="{@at}" y="{../@height}" dy="17"><xsl:value-of select="@label"/></text>
        </xsl:for-each>
      </g>
      <g text-anchor="end">
        <xsl:for-each select="y[@label != '']">
          <text x="-7" y="{@at}" dy="4"><xsl:value-of select="@label"/></text>
        </xsl:for-each>
        <text x="{@width}" y="{@height}" dy="36"><xsl:value-of select="@xTitle"/></text>
      </g>
      <text x="-50" y="-14"><xsl:value-of select="@yTitle"/></text>
      <xsl:for-each select="marker">
        <xsl:call-template name="marker">
          <xsl:with-param name="x" select="@x"/>
          <xsl:with-param name="y" select="@y"/>
          <xsl:with-param name="mark" select="@mark"/>
        </xsl:call-template>
      </xsl:for-each>
      <xsl:call-template name="legend"/>
    </svg>
  </xsl:template>

  <xsl:template name="marker">
    <xsl:param name="x"/>
    <xsl:param name="y"/>
    <xsl:param name="mark"/>
    <xsl:choose>
      <xsl:when test="$mark = 'passed'">
        <circle xmlns="http://www.w3.org/2000/svg" cx="{$x}" cy="{$y}" r="5" fill="#1f7a3d" stroke="#fff"/>
      </xsl:when>
      <xsl:when test="$mark = 'planned'">
        <circle xmlns="http://www.w3.org/2000/svg" cx="{$x}" cy="{$y}" r="4" fill="#fff" stroke="#56606b"/>
      </xsl:when>
      <xsl:when test="$mark = 'unmeasured'">
        <path xmlns="http://www.w3.org/2000/svg" transform="translate({$x} {$y})" d="M0-6L6 5H-6Z" fill="#fff"
              stroke="#b3261e" stroke-width="2"/>
      </xsl:when>
      <xsl:otherwise>
        <path xmlns="http://www.w3.org/2000/svg" transform="translate({$x} {$y})" d="M-5-5H5V5H-5ZL5 5M-5 5L5-5" fill="#fff"
              stroke="#b3261e" stroke-width="2"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="legend">
    <g xmlns="http://www.w3.org/2000/svg" transform="translate({$legendPlace} 0)">
      <line x1="20" x2="44" y1="-18" y2="-18" stroke="#2a6fb0" stroke-width="2"/>
      <text x="50" y="-14">
        <xsl:call-template name="text"><xsl:with-param name="key" select="'legendExpected'"/></xsl:call-template>
      </text>
      <rect x="136" y="-23" width="24" height="10" fill="#2a6fb0" fill-opacity="0.25"/>
      <text x="166" y="-14">
        <xsl:call-template name="text"><xsl:with-param name="key" select="'legendBand'"/></xsl:call-template>
      </text>
      <xsl:call-template name="marker">
        <xsl:with-param name="x" select="240"/>
        <xsl:with-param name="y" select="-18"/>
        <xsl:with-param name="mark" select="'passed'"/>
      </xsl:call-template>
      <text x="251" y="-14">
        <xsl:call-template name="text"><xsl:with-param name="key" select="'legendPassed'"/></xsl:call-template>
      </text>
      <xsl:call-template name="marker">
        <xsl:with-param name="x" select="328"/>
        <xsl:with-param name="y" select="-18"/>
        <xsl:with-param name="mark" select="'failed'"/>
      </xsl:call-template>
      <text x="339" y="-14">
        <xsl:call-template name="text"><xsl:with-param name="key" select="'legendFailed'"/></xsl:call-template>
      </text>
      <xsl:if test="marker[@mark = 'unmeasured']">
        <xsl:call-template name="marker">
          <xsl:with-param name="x" select="432"/>
          <xsl:with-param name="y" select="-18"/>
          <xsl:with-param name="mark" select="'unmeasured'"/>
        </xsl:call-template>
        <text x="443" y="-14">
          <xsl:call-template name="text"><xsl:with-param name="key" select="'legendUnmeasured'"/></xsl:call-template>
        </text>
      </xsl:if>
    </g>
  </xsl:template>
</xsl:stylesheet>
