<?xml version="1.0" encoding="UTF-8"?>
<!-- The report of Overcurrent: its captions. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:t="urn:texts">
  <xsl:import href="test.xsl"/>

  <t:text key="results" en="Operate times" ru="Время срабатывания"/>
  <t:text key="values" en="Pick-up and drop-off" ru="Срабатывание и возврат"/>
  <t:text key="chart" en="Characteristic" ru="Характеристика"/>
  <t:text key="legendUnmeasured" en="no operate time" ru="время не измерено"/>

  <xsl:variable name="captions" select="document('')/xsl:stylesheet/t:text"/>
</xsl:stylesheet>
