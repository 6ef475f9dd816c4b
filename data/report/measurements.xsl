<?xml version="1.0" encoding="UTF-8"?>
<!-- The report of a test that is a list of measurements: its captions. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:t="urn:texts">
  <xsl:import href="test.xsl"/>

  <t:text key="results" en="Results" ru="Результаты"/>
  <t:text key="chart" en="Deviations" ru="Отклонения"/>

  <xsl:variable name="captions" select="document('')/xsl:stylesheet/t:text"/>
  <xsl:variable name="legendPlace" select="'120'"/>
</xsl:stylesheet>
