<?xml version="1.0" encoding="UTF-8"?>
<!-- The report of a test that is a list of measurements. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:import href="test.xsl"/>

  <xsl:variable name="legendPlace" select="'120'"/>
</xsl:stylesheet>
