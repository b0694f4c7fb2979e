<?xml version="1.0"?>
<!-- Makes the document of control/points.xml, but for its line breaks, from what ogr2ogr writes as GML. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:ogr="http://ogr.maptools.org/"
                exclude-result-prefixes="ogr">
  <xsl:output method="xml" encoding="UTF-8" omit-xml-declaration="yes" indent="no"/>
  <xsl:strip-space elements="*"/>

  <xsl:template match="/">
    <Points>
      <Layer>
        <xsl:apply-templates select="*/ogr:featureMember/ogr:points"/>
      </Layer>
    </Points>
  </xsl:template>

  <xsl:template match="ogr:points">
    <Point>
      <Number><xsl:value-of select="ogr:number"/></Number>
      <Code><xsl:value-of select="ogr:code"/></Code>
      <Height><xsl:value-of select="ogr:height"/></Height>
      <!-- At most 15 decimals; the factor makes a half of the last one go up. -->
      <Share><xsl:value-of select="format-number(ogr:share * 1.0000000000000002, '0.###############')"/></Share>
      <Title><xsl:value-of select="ogr:name"/></Title>
      <Remark><xsl:value-of select="ogr:remark"/></Remark>
      <Kind><xsl:value-of select="ogr:kind"/></Kind>
      <Built>
        <xsl:if test="string(ogr:built)">
          <xsl:value-of select="concat(substring(ogr:built, 6, 2), '/', substring(ogr:built, 9, 2), '/', substring(ogr:built, 1, 4))"/>
        </xsl:if>
      </Built>
      <Balance><xsl:value-of select="ogr:balance"/></Balance>
      <Value><xsl:value-of select="ogr:value"/></Value>
    </Point>
  </xsl:template>
</xsl:stylesheet>
